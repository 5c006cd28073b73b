// The service's files: the atomic replace of the values file and the token
// file made private on first use.
#include <legacy/oru/service/durable.h>

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

using namespace Legacy::Oru::Service;

class Folder {
public:
    Folder() {
        char path[] = "/tmp/oru-durable-XXXXXX";
        path_ = mkdtemp(path);
    }
    ~Folder() { std::system(("rm -rf '" + path_ + "'").c_str()); }
    std::string operator/(std::string const& name) const { return path_ + "/" + name; }
    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        DIR* const dir = opendir(path_.c_str());
        while (dirent* entry = readdir(dir)) {
            std::string const name = entry->d_name;
            if (name != "." && name != "..") {
                names.push_back(name);
            }
        }
        closedir(dir);
        return names;
    }

private:
    std::string path_;
};

std::string Read(std::string const& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

unsigned ModeOf(std::string const& path) {
    struct stat info;
    return stat(path.c_str(), &info) == 0 ? info.st_mode & 07777 : 0;
}

TEST(ServiceDurableTest, ReplaceFileSwapsTheWholeFileAndKeepsItsMode) {
    Folder folder;
    std::string const path = folder / "values.json";
    std::string error;
    ASSERT_TRUE(ReplaceFile(path, "{\"a\": 1}\n", error)) << error;
    EXPECT_EQ("{\"a\": 1}\n", Read(path));
    EXPECT_EQ(0644u, ModeOf(path));
    chmod(path.c_str(), 0640);
    std::string const large(3 * 1024 * 1024, 'x');
    ASSERT_TRUE(ReplaceFile(path, large, error)) << error;
    EXPECT_EQ(large, Read(path));
    EXPECT_EQ(0640u, ModeOf(path));
    // No temporary file stays behind.
    EXPECT_EQ(std::vector<std::string>{"values.json"}, folder.Names());

    // A folder that is gone: refused with the reason, nothing made.
    EXPECT_FALSE(ReplaceFile(folder / "gone/values.json", "{}", error));
    EXPECT_NE(std::string::npos, error.find("gone/values.json")) << error;
    // A file that cannot be renamed over (a folder in its place) stays as it was.
    mkdir((folder / "taken").c_str(), 0700);
    EXPECT_FALSE(ReplaceFile(folder / "taken", "{}", error));
    EXPECT_EQ(0700u, ModeOf(folder / "taken"));
    EXPECT_EQ(2u, folder.Names().size());
}

TEST(ServiceDurableTest, LoadTokenMakesAPrivateTokenOnce) {
    Folder folder;
    std::string const path = folder / "config/oru/token";
    std::string token;
    std::string error;
    ASSERT_TRUE(LoadToken(path, token, error)) << error;
    EXPECT_EQ(64u, token.size());
    EXPECT_EQ(std::string::npos, token.find_first_not_of("0123456789abcdef"));
    EXPECT_EQ(0600u, ModeOf(path));
    EXPECT_EQ(0700u, ModeOf(folder / "config/oru"));
    EXPECT_EQ(0700u, ModeOf(folder / "config"));
    std::string again;
    ASSERT_TRUE(LoadToken(path, again, error));
    EXPECT_EQ(token, again);
    std::string other;
    ASSERT_TRUE(LoadToken(folder / "second", other, error));
    EXPECT_NE(token, other);

    struct Row {
        char const* name;
        char const* content;
        bool ok;
        char const* token;
    };
    std::vector<Row> const rows = {
        {"spaces and a newline around it", "  s3cret \n", true, "s3cret"},
        {"a second line is ignored", "first\nsecond\n", true, "first"},
        {"empty", "", false, ""},
        {"blank", " \n\t\n", false, ""},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.name);
        std::ofstream(folder / "given") << row.content;
        std::string read;
        EXPECT_EQ(row.ok, LoadToken(folder / "given", read, error));
        if (row.ok) {
            EXPECT_EQ(row.token, read);
        }
    }
    EXPECT_FALSE(LoadToken(folder / "given/below", token, error));
}

}  // namespace

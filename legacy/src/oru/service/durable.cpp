#include <legacy/oru/service/durable.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>

namespace Legacy {
namespace Oru {
namespace Service {

namespace {

std::string Reason(std::string const& what, std::string const& path) {
    return what + " " + path + ": " + std::strerror(errno);
}

std::string FolderOf(std::string const& path) {
    std::size_t const slash = path.rfind('/');
    if (slash == std::string::npos) {
        return ".";
    }
    return slash == 0 ? "/" : path.substr(0, slash);
}

bool WriteAll(int fd, char const* data, std::size_t size) {
    while (size > 0) {
        ssize_t const written = ::write(fd, data, size);
        if (written < 0) {
            if (errno == EINTR) {
                continue;
            }
            return false;
        }
        data += written;
        size -= static_cast<std::size_t>(written);
    }
    return true;
}

bool SyncFolder(std::string const& folder, std::string& error) {
    int const fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) {
        error = Reason("cannot open the folder", folder);
        return false;
    }
    bool const synced = ::fsync(fd) == 0;
    if (!synced) {
        error = Reason("cannot sync the folder", folder);
    }
    ::close(fd);
    return synced;
}

}  // namespace

bool ReplaceFile(std::string const& path, std::string const& content, std::string& error) {
    std::string const folder = FolderOf(path);
    std::string const base =
        path.substr(path.rfind('/') == std::string::npos ? 0 : path.rfind('/') + 1);
    std::string temporary = folder + "/." + base + ".XXXXXX";
    int const fd = ::mkostemp(&temporary[0], O_CLOEXEC);
    if (fd < 0) {
        error = Reason("cannot make a temporary file beside", path);
        return false;
    }
    struct stat old;
    mode_t const mode = ::stat(path.c_str(), &old) == 0 ? (old.st_mode & 07777) : 0644;
    bool const written =
        ::fchmod(fd, mode) == 0 && WriteAll(fd, content.data(), content.size()) && ::fsync(fd) == 0;
    if (!written) {
        error = Reason("cannot write", temporary);
    }
    if (::close(fd) != 0 && written) {
        error = Reason("cannot write", temporary);
        ::unlink(temporary.c_str());
        return false;
    }
    if (!written) {
        ::unlink(temporary.c_str());
        return false;
    }
    if (::rename(temporary.c_str(), path.c_str()) != 0) {
        error = Reason("cannot rename the temporary file over", path);
        ::unlink(temporary.c_str());
        return false;
    }
    return SyncFolder(folder, error);
}

bool LoadToken(std::string const& path, std::string& token, std::string& error) {
    int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0 && errno == ENOENT) {
        std::string const folder = FolderOf(path);
        // Each missing folder on the way is made private.
        for (std::size_t slash = folder.find('/', 1);; slash = folder.find('/', slash + 1)) {
            std::string const step = folder.substr(0, slash);
            if (::mkdir(step.c_str(), 0700) != 0 && errno != EEXIST) {
                error = Reason("cannot make the folder", step);
                return false;
            }
            if (slash == std::string::npos) {
                break;
            }
        }
        unsigned char random[32];
        int const source = ::open("/dev/urandom", O_RDONLY | O_CLOEXEC);
        bool const got = source >= 0 && ::read(source, random, sizeof random) == sizeof random;
        if (source >= 0) {
            ::close(source);
        }
        if (!got) {
            error = "cannot read /dev/urandom";
            return false;
        }
        static char const k_hex[] = "0123456789abcdef";
        std::string made;
        for (unsigned char const byte : random) {
            made += k_hex[byte >> 4];
            made += k_hex[byte & 15];
        }
        made += "\n";
        int const out = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (out >= 0) {
            bool const written = WriteAll(out, made.data(), made.size()) && ::fsync(out) == 0;
            ::close(out);
            if (!written) {
                error = Reason("cannot write", path);
                return false;
            }
        } else if (errno != EEXIST) {
            error = Reason("cannot make", path);
            return false;
        }
        // Made here or by a second server that raced this one: read it back.
        fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    }
    if (fd < 0) {
        error = Reason("cannot read", path);
        return false;
    }
    char buffer[512];
    ssize_t const size = ::read(fd, buffer, sizeof buffer);
    ::close(fd);
    if (size < 0) {
        error = Reason("cannot read", path);
        return false;
    }
    token.assign(buffer, static_cast<std::size_t>(size));
    token.erase(0, token.find_first_not_of(" \t\r\n"));
    std::size_t const end = token.find_first_of(" \t\r\n");
    if (end != std::string::npos) {
        token.resize(end);
    }
    if (token.empty()) {
        error = path + " holds no token";
        return false;
    }
    return true;
}

std::string DefaultTokenFile() {
    char const* const config = std::getenv("XDG_CONFIG_HOME");
    if (config && *config) {
        return std::string(config) + "/oru/token";
    }
    char const* const home = std::getenv("HOME");
    return std::string(home && *home ? home : ".") + "/.config/oru/token";
}

}  // namespace Service
}  // namespace Oru
}  // namespace Legacy

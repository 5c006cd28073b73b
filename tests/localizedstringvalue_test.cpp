#include <gtest/gtest.h>

#include <sstream>

#include <vintor/localization.h>

#include <legacy/oru/oru.h>

#include "test_util.h"

namespace {

using namespace Legacy::Oru;
using namespace OruTest;

using ItemPtr = boost::intrusive_ptr<ItemBase>;
using InfoPtr = boost::intrusive_ptr<InfoBase>;

// A message of a key registered for these tests, with one argument.
LocalizedString Greeting(char const* whom) {
    Vintor::Localization::SetString("Test.LocalizedValue.Greeting", "Hello %1%");
    LocalizedString message("Test.LocalizedValue.Greeting");
    message.AddArgument(boost::intrusive_ptr<ItemBase const>(StringItem::Create(0, whom)));
    return message;
}

TEST(LocalizedStringValueTest, NoSerialFormAnywhere) {
    LocalizedStringItem item(135);
    item.SetVal(Greeting("x"));
    EXPECT_EQ(item.GetSerialDataSize(), 0u);
    // -26, not -41, even for a null record; the record is left alone.
    EXPECT_EQ(item.Serialize(nullptr), -26);
    ItemBase::SerialStruct_t record;
    EXPECT_EQ(item.Serialize(&record), -26);
    EXPECT_EQ(record.GetId(), 0u);
    EXPECT_EQ(record.type, 0);
    EXPECT_EQ(record.GetData(), nullptr);

    Bytes const payload = {'a', 0};
    auto const fitting = MakeRecord(135, 135, 0, payload);
    EXPECT_EQ(item.Deserialize(&fitting), -26);
    EXPECT_EQ(item.Deserialize(nullptr), -26);
    EXPECT_EQ(item.GetValAsString(), "Hello x");

    // The type dispatch knows no such record and makes nothing.
    ItemPtr read(StringItem::Create(1, "kept"));
    EXPECT_EQ(ItemBase::Deserialize(&fitting, read), -41);
    EXPECT_EQ(read->GetValAsString(), "kept");
}

TEST(LocalizedStringValueTest, ValuesCompareByArgumentIdentity) {
    boost::intrusive_ptr<LocalizedStringInfo> info(
        new LocalizedStringInfo(3, "Banner", Permission_t(1)));
    LocalizedString const message = Greeting("world");
    info->SetDefault(message);
    ItemPtr const created(info->CreateItem());
    EXPECT_EQ(created->GetId(), 3u);
    EXPECT_EQ(created->GetType(), OruType_t::LocalizedString);
    // Copies share the argument Items, so they stay equal.
    ItemPtr const copy(created->DeepCopy(8));
    EXPECT_TRUE(created->IsEqualValue(copy));
    // The same text made of other Items is another value.
    boost::intrusive_ptr<LocalizedStringItem> other(new LocalizedStringItem(3));
    other->SetVal(Greeting("world"));
    EXPECT_EQ(other->GetValAsString(), created->GetValAsString());
    EXPECT_FALSE(created->IsEqualValue(other));

    bool changed = false;
    EXPECT_EQ(other->AssignArrayValue(created, 5, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_TRUE(other->IsEqualValue(created));
    EXPECT_EQ(other->AssignValue(created, &changed), 0);
    EXPECT_FALSE(changed);
    changed = true;
    EXPECT_EQ(other->AssignValue(ItemPtr(StringItem::Create(3, "Hello world")), &changed), -26);
    EXPECT_EQ(other->AssignValue(nullptr, &changed), -31);
    EXPECT_TRUE(changed);

    LocalizedStringInfo target(4, "t", Permission_t());
    EXPECT_EQ(target.AssignValue(info, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(target.GetDefault(), message);
    EXPECT_EQ(target.AssignValue(info, &changed), 0);
    EXPECT_FALSE(changed);
    EXPECT_EQ(target.AssignValue(InfoPtr(new StringInfo(4, "s", Permission_t())), &changed), -26);
    EXPECT_EQ(target.AssignValue(nullptr, &changed), -31);
    EXPECT_EQ(target.GetName(), "t");

    // No bounds: never equal, nothing to merge.
    EXPECT_FALSE(info->IsEqualBounds(info));
    EXPECT_EQ(info->MergeBounds(info), -26);
    EXPECT_EQ(created->Validate(nullptr), nullptr);
    EXPECT_EQ(created->Validate(InfoPtr(new StringInfo(3, "s", Permission_t()))), nullptr);
}

TEST(LocalizedStringValueTest, TextForms) {
    LocalizedStringInfo info(3, "Banner", Permission_t(6));
    info.SetDefault(Greeting("you"));
    EXPECT_EQ(TextOf(info), "\"Hello you");  // no closing quote
    EXPECT_EQ(DumpOf(info),
              "id: 3\npermission: 6\nname: Banner\ntype: LocalizedString\ndefault: Hello you\n");
    ItemPtr const item(info.CreateItem());
    EXPECT_EQ(DumpOf(*item), "id: 3\ntype: LocalizedString\nvalue: Hello you\n");
    // An empty message has no text.
    EXPECT_EQ(LocalizedStringItem().GetValAsString(), "");

    std::istringstream in("words");
    std::ostringstream errors;
    EXPECT_FALSE(item->SetValFromStream(in, errors, nullptr));
    EXPECT_EQ(errors.str(), "Impl. me");
    EXPECT_EQ(item->GetValAsString(), "Hello you");
}

}  // namespace

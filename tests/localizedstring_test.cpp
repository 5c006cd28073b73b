#include <gtest/gtest.h>

#include <vintor/localization.h>

#include <legacy/oru/oru.h>

namespace {

using namespace Legacy::Oru;

boost::intrusive_ptr<ItemBase const> Text(std::string const& value) {
    return boost::intrusive_ptr<ItemBase const>(StringItem::Create(0, value));
}

TEST(LocalizedStringTest, EmptyKeyMakesNoText) {
    LocalizedString message;
    EXPECT_TRUE(message.IsEmpty());
    EXPECT_FALSE(message.IsValid());
    EXPECT_EQ(message.GetString(""), "");
    message.AddArgument(Text("x"));
    EXPECT_TRUE(message.IsEmpty());
    message.SetKey("TypesSystemNumericValidationMax");
    EXPECT_TRUE(message.IsValid());
    EXPECT_EQ(message.GetArguments().size(), 1u);
    message.SetKey("");
    EXPECT_TRUE(message.IsEmpty());
    EXPECT_EQ(message.GetArguments().size(), 1u);
}

TEST(LocalizedStringTest, SubstitutesItemTextsInOrder) {
    LocalizedString message("TypesSystemNumericValidationMax");
    message.AddArgument(Text("Gain"));
    message.AddArgument(
        boost::intrusive_ptr<ItemBase const>(NumericItem<S32Traits>::Create(0, -7)));
    EXPECT_EQ(message.GetString(""), "Setting 'Gain': the value is above the maximum -7");
    // Unknown keys and argument counts that do not fit give no text.
    EXPECT_EQ(LocalizedString("Unknown.Key.ForTest").GetString(""), "");
    LocalizedString missing("TypesSystemNumericValidationMax");
    missing.AddArgument(Text("only one"));
    EXPECT_EQ(missing.GetString(""), "");
    message.SetKey(message.GetKey());
    EXPECT_EQ(message.GetKey(), "TypesSystemNumericValidationMax");
}

TEST(LocalizedStringTest, EqualityIsByKeyAndArgumentIdentity) {
    auto const shared = Text("a");
    LocalizedString first("k");
    LocalizedString second("k");
    EXPECT_EQ(first, second);
    first.AddArgument(shared);
    second.AddArgument(Text("a"));
    EXPECT_NE(first, second);  // equal values, different items
    LocalizedString third("k");
    third.AddArgument(shared);
    EXPECT_EQ(first, third);
    EXPECT_NE(first, LocalizedString("K"));
}

TEST(LocalizedStringTest, CopiesHaveTheirOwnListOfSharedItems) {
    auto const item = Text("a");
    LocalizedString source("k");
    source.AddArgument(item);
    LocalizedString copy(source);
    EXPECT_EQ(item->GetRefCount(), 3);
    copy.AddArgument(Text("b"));
    EXPECT_EQ(source.GetArguments().size(), 1u);
    EXPECT_EQ(copy.GetArguments().size(), 2u);

    LocalizedString assigned("other");
    assigned = source;
    EXPECT_EQ(assigned, source);
    LocalizedString& alias = assigned;
    assigned = alias;
    EXPECT_EQ(assigned.GetArguments().size(), 1u);
    // A null argument is stored like any other.
    assigned.AddArgument(nullptr);
    EXPECT_EQ(assigned.GetArguments().size(), 2u);
}

}  // namespace

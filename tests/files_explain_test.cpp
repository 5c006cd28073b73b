#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <legacy/oru/files/check.h>
#include <legacy/oru/files/explain.h>
#include <legacy/oru/oru.h>

namespace {

using namespace Legacy::Oru;
using Files::Check;
using Files::Explain;
using Files::Explanation;
using Files::Problems;

using Strings = std::vector<std::string>;
using ConstInfo = boost::intrusive_ptr<InfoBase const>;

// The argument texts of a message; each must be a StringItem with id 0.
Strings Arguments(LocalizedString const& message) {
    Strings texts;
    for (auto const& argument : message.GetArguments()) {
        auto const* const text = dynamic_cast<StringItem const*>(argument.get());
        EXPECT_NE(text, nullptr);
        if (text) {
            EXPECT_EQ(text->GetId(), 0u);
            texts.push_back(text->GetVal());
        }
    }
    return texts;
}

// Explains item against info, expecting a failure with exactly key and arguments.
void ExpectFailure(ItemBase const& item, ConstInfo const& info, std::string const& key,
                   Strings const& arguments, std::string const& text) {
    ASSERT_NE(item.Validate(info), nullptr) << key;
    std::optional<Explanation> const explained = Explain(item, info);
    ASSERT_TRUE(explained.has_value()) << key;
    EXPECT_EQ(explained->message.GetKey(), key);
    EXPECT_EQ(Arguments(explained->message), arguments);
    EXPECT_EQ(explained->text, text);
}

// The model passes item; Explain then speaks exactly when the files rule or
// the round trips refuse it.
void ExpectPass(ItemBase const& item, ConstInfo const& info) {
    ASSERT_EQ(item.Validate(info), nullptr);
    Problems const problems = Check(item, info);
    std::optional<Explanation> const explained = Explain(item, info);
    ASSERT_EQ(explained.has_value(), !problems.empty());
    if (explained) {
        EXPECT_NE(explained->text.find(problems.front().message), std::string::npos);
    }
}

template <class InfoT, class... Rest>
boost::intrusive_ptr<InfoT> Make(std::string const& name, Rest... rest) {
    return boost::intrusive_ptr<InfoT>(new InfoT(7, name, Permission_t(3), rest...));
}

TEST(FilesExplain, TypeMismatchNamesBothTypesOrTheMissingInfo) {
    NumericItem<U32Traits> number(7);
    ExpectFailure(number, nullptr, "TypesSystemValidateTypeMismatch",
                  {"Unknown", "NULL-Info", "Numeric(U32)"},
                  "Setting 'Unknown': the definition is of type NULL-Info, the value of type "
                  "Numeric(U32)");
    // Another element type of the same template does not fit.
    ExpectFailure(number, Make<NumericInfo<S32Traits>>("Gain"), "TypesSystemValidateTypeMismatch",
                  {"Gain", "Numeric(S32)", "Numeric(U32)"},
                  "Setting 'Gain': the definition is of type Numeric(S32), the value of type "
                  "Numeric(U32)");
    ExpectFailure(BoolItem(1), Make<StringInfo>("Name"), "TypesSystemValidateTypeMismatch",
                  {"Name", "String(Undefined)", "Bool(Undefined)"},
                  "Setting 'Name': the definition is of type String(Undefined), the value of "
                  "type Bool(Undefined)");
    // Families without a printed name read "Invalid".
    ExpectFailure(ExtendedItem(1), Make<BoolInfo>("Flag"), "TypesSystemValidateTypeMismatch",
                  {"Flag", "Bool(Undefined)", "Invalid(Undefined)"},
                  "Setting 'Flag': the definition is of type Bool(Undefined), the value of type "
                  "Invalid(Undefined)");
    ExpectFailure(CompositeItem(1), Make<CollectionInfo>("Set"), "TypesSystemValidateTypeMismatch",
                  {"Set", "Collection(Undefined)", "Composite(Undefined)"},
                  "Setting 'Set': the definition is of type Collection(Undefined), the value of "
                  "type Composite(Undefined)");
    ExpectFailure(NumericArrayItem<U8Traits>(1), Make<NumericArrayInfo<S8Traits>>("A"),
                  "TypesSystemValidateTypeMismatch", {"A", "NumericArray(S8)", "NumericArray(U8)"},
                  "Setting 'A': the definition is of type NumericArray(S8), the value of type "
                  "NumericArray(U8)");
    ExpectFailure(StringArrayItem(1), Make<BoolArrayInfo>("L"), "TypesSystemValidateTypeMismatch",
                  {"L", "BoolArray(Undefined)", "StringArray(Undefined)"},
                  "Setting 'L': the definition is of type BoolArray(Undefined), the value of "
                  "type StringArray(Undefined)");
    ExpectFailure(BoolArrayItem(1), nullptr, "TypesSystemValidateTypeMismatch",
                  {"Unknown", "NULL-Info", "BoolArray(Undefined)"},
                  "Setting 'Unknown': the definition is of type NULL-Info, the value of type "
                  "BoolArray(Undefined)");
    ExpectFailure(EnumItem(1), Make<StringInfo>("E"), "TypesSystemValidateTypeMismatch",
                  {"E", "String(Undefined)", "Enum(Undefined)"},
                  "Setting 'E': the definition is of type String(Undefined), the value of type "
                  "Enum(Undefined)");
    ExpectFailure(StringItem(1), Make<EnumInfo>("S", false), "TypesSystemValidateTypeMismatch",
                  {"S", "Enum(Undefined)", "String(Undefined)"},
                  "Setting 'S': the definition is of type Enum(Undefined), the value of type "
                  "String(Undefined)");
}

TEST(FilesExplain, FamiliesTheModelCannotCheckAreExplainedByTheFilesRule) {
    // Without an Info the model's words stay.
    ExpectFailure(NumericSparseItem<S16Traits>(1), nullptr, "TypesSystemIllegalValidatationError",
                  {"Unknown", "NumericSparse(S16)"},
                  "Setting 'Unknown': a value of type NumericSparse(S16) cannot be checked this "
                  "way");
    // With one, the table and the bounds decide, and say so without a key.
    struct Row {
        ItemBase const* item;
        ConstInfo info;
        char const* text;
    };
    boost::intrusive_ptr<NumericSparseItem<DoubleTraits>> const rate(
        new NumericSparseItem<DoubleTraits>(1));
    boost::intrusive_ptr<CoordinateItem<FloatTraits>> const position(
        new CoordinateItem<FloatTraits>(1));
    boost::intrusive_ptr<RectItem<U16Traits>> const box(new RectItem<U16Traits>(1));
    boost::intrusive_ptr<RectArrayItem<U16Traits>> const boxes(new RectArrayItem<U16Traits>(1));
    Row const rows[] = {
        {rate.get(), Make<NumericSparseInfo<DoubleTraits>>("Rate"),
         "Setting 'Rate': 0 is not in the table; no entry is allowed"},
        {position.get(), Make<CoordinateInfo<FloatTraits>>("Pos"),
         "Setting 'Pos': /x: 0 is below the minimum 1.1754944e-38"},
        {box.get(), Make<RectInfo<U16Traits>>("Box"), nullptr},
        {boxes.get(), Make<RectArrayInfo<U16Traits>>("Boxes"), nullptr},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.info->GetName());
        EXPECT_NE(row.item->Validate(row.info), nullptr);
        std::optional<Explanation> const explained = Explain(*row.item, row.info);
        if (!row.text) {
            EXPECT_FALSE(explained.has_value());
            continue;
        }
        ASSERT_TRUE(explained.has_value());
        EXPECT_EQ(explained->message.GetKey(), "");
        EXPECT_EQ(explained->text, row.text);
    }
}

template <class T>
void ExpectBounds(typename T::Element min, typename T::Element max, typename T::Element below,
                  typename T::Element above, std::string const& minExact,
                  std::string const& minText, std::string const& maxExact,
                  std::string const& maxText) {
    auto info = Make<NumericInfo<T>>("Gain");
    info->SetMax(max);
    info->SetMin(min);
    NumericItem<T> item(7);
    item.SetVal(below);
    ExpectFailure(item, info, "TypesSystemNumericValidationMin", {"Gain", minExact},
                  "Setting 'Gain': the value is below the minimum " + minText);
    item.SetVal(above);
    ExpectFailure(item, info, "TypesSystemNumericValidationMax", {"Gain", maxExact},
                  "Setting 'Gain': the value is above the maximum " + maxText);
    item.SetVal(min);
    ExpectPass(item, info);
    item.SetVal(max);
    ExpectPass(item, info);
}

TEST(FilesExplain, NumericBoundsOfEveryElementType) {
    // 8-bit bounds arrive as one raw character; people read the number.
    ExpectBounds<U8Traits>(65, 200, 3, 201, "A", "65", std::string(1, char(200)), "200");
    ExpectBounds<S8Traits>(-5, 90, -6, 91, std::string(1, char(-5)), "-5", "Z", "90");
    ExpectBounds<U16Traits>(10, 60000, 9, 60001, "10", "10", "60000", "60000");
    ExpectBounds<S16Traits>(-300, 300, -301, 301, "-300", "-300", "300", "300");
    ExpectBounds<U32Traits>(0 + 1, 100, 0, 101, "1", "1", "100", "100");
    ExpectBounds<S32Traits>(-70000, 70000, -70001, 70001, "-70000", "-70000", "70000", "70000");
    ExpectBounds<U64Traits>(5, 9223372036854775813ull, 4, 9223372036854775814ull, "5", "5",
                            "9223372036854775813", "9223372036854775813");
    ExpectBounds<S64Traits>(-9000000000000000000ll, 9000000000000000000ll, -9000000000000000001ll,
                            9000000000000000001ll, "-9000000000000000000", "-9000000000000000000",
                            "9000000000000000000", "9000000000000000000");
    ExpectBounds<FloatTraits>(1.5f, 1234567.f, 1.25f, 1234568.f, "1.5", "1.5", "1.23457e+06",
                              "1.23457e+06");
    ExpectBounds<DoubleTraits>(-0.1, 2.5, -0.2, 2.75, "-0.1", "-0.1", "2.5", "2.5");

    // A NaN is neither below nor above: both pass it.
    auto info = Make<NumericInfo<DoubleTraits>>("Rate");
    info->SetMin(0.0);
    info->SetMax(1.0);
    NumericItem<DoubleTraits> nan(7);
    nan.SetVal(std::numeric_limits<double>::quiet_NaN());
    ExpectPass(nan, info);
    // A fresh floating setting excludes zero.
    NumericItem<FloatTraits> zero(7);
    ExpectFailure(zero, Make<NumericInfo<FloatTraits>>("F"), "TypesSystemNumericValidationMin",
                  {"F", "1.17549e-38"}, "Setting 'F': the value is below the minimum 1.17549e-38");
}

TEST(FilesExplain, SizesLengthsFlagsEnumerators) {
    auto numbers = Make<NumericArrayInfo<U8Traits>>("Levels");
    numbers->SetMaxSize(3);
    numbers->SetMinSize(2);
    NumericArrayItem<U8Traits> levels(7);
    levels.SetVal({1});
    // Sizes are decimal, also for 8-bit elements.
    ExpectFailure(levels, numbers, "TypesSystemNumericArrayValidationMinSize", {"Levels", "2"},
                  "Setting 'Levels': the array has fewer than 2 elements");
    levels.SetVal({1, 2, 3, 4});
    ExpectFailure(levels, numbers, "TypesSystemNumericArrayValidationMaxSize", {"Levels", "3"},
                  "Setting 'Levels': the array has more than 3 elements");
    levels.SetVal({1, 2, 3});
    ExpectPass(levels, numbers);

    auto strings = Make<StringArrayInfo>("Names");
    strings->SetMaxSize(2);
    strings->SetMinSize(1);
    StringArrayItem names(7);
    ExpectFailure(names, strings, "TypesSystemStringArrayValidationMinSize", {"Names", "1"},
                  "Setting 'Names': the list has fewer than 1 strings");
    names.SetVal({"a", "b", "c"});
    ExpectFailure(names, strings, "TypesSystemStringArrayValidationMaxSize", {"Names", "2"},
                  "Setting 'Names': the list has more than 2 strings");

    // One key for both bounds of a flag array, with the bound that broke.
    auto flagInfo = Make<BoolArrayInfo>("Flags");
    flagInfo->SetMaxSize(4);
    flagInfo->SetMinSize(2);
    BoolArrayItem flags(7);
    flags.SetVal({true});
    ExpectFailure(flags, flagInfo, "BoolArrayValidationMinSize", {"Flags", "2"},
                  "Setting 'Flags': the number of flags breaks the size bound 2");
    flags.SetVal({true, false, true, false, true});
    ExpectFailure(flags, flagInfo, "BoolArrayValidationMinSize", {"Flags", "4"},
                  "Setting 'Flags': the number of flags breaks the size bound 4");

    auto textInfo = Make<StringInfo>("Host");
    textInfo->SetMaxLength(3);
    StringItem text(7);
    text.SetVal("abcd");
    ExpectFailure(text, textInfo, "TypesSystemStringValidationLength", {"Host", "3"},
                  "Setting 'Host': the text is longer than 3 characters");
    text.SetVal("abc");
    ExpectPass(text, textInfo);

    auto boolInfo = Make<BoolInfo>("On");
    boolInfo->SetDefault(true);
    BoolItem on(7);
    on.SetVal(false);
    ExpectPass(on, boolInfo);
    boolInfo->SetFixed(true);
    ExpectFailure(on, boolInfo, "TypesSystemBoolValidationFixedVal", {"On", "1"},
                  "Setting 'On': the value must be 1");
    boolInfo->SetDefault(false);
    on.SetVal(true);
    ExpectFailure(on, boolInfo, "TypesSystemBoolValidationFixedVal", {"On", "0"},
                  "Setting 'On': the value must be 0");

    auto enumInfo = Make<EnumInfo>("Mode", false);
    EnumInfo::Table table(2);
    table[0].name = "off";
    table[0].value = 0;
    table[1].name = "auto";
    table[1].value = 2;
    table[1].disabled = true;
    enumInfo->SetTable(table);
    EnumItem mode(7);
    mode.SetVal(-1);
    ExpectFailure(mode, enumInfo, "TypesSystemEnumValidationValue", {"Mode", "-1"},
                  "Setting 'Mode': -1 is not an allowed value");
    // A disabled entry is still known to the check.
    mode.SetVal(2);
    ExpectPass(mode, enumInfo);
}

TEST(FilesExplain, CompositeSizeAndChildTypes) {
    auto info = Make<CompositeInfo>("Stream");
    info->AddInfo(Make<NumericInfo<U16Traits>>("Port"));
    info->AddInfo(Make<StringInfo>("Codec"));
    CompositeItem item(7);
    item.AddItem(new NumericItem<U16Traits>(0));
    ExpectFailure(item, info, "TypesSystemCompositeValidationSize", {"Stream", "1"},
                  "Setting 'Stream': 1 parts do not match the definition");
    item.AddItem(new BoolItem(0));
    ExpectFailure(item, info, "TypesSystemCompositeTypeMismatch", {"Stream", "1"},
                  "Setting 'Stream': part 1 has the wrong type");
    CompositeItem right(7);
    right.AddItem(new NumericItem<U16Traits>(0));
    right.AddItem(new StringItem(0));
    ExpectPass(right, info);
    // The children's own bounds are not the composite's concern.
    auto strict = Make<CompositeInfo>("Strict");
    auto port = Make<NumericInfo<U16Traits>>("Port");
    port->SetMin(100);
    strict->AddInfo(port);
    strict->AddInfo(Make<StringInfo>("Codec"));
    ExpectPass(right, strict);

    ExpectFailure(ExtendedItem(7), nullptr, "TypesSystemValidateTypeMismatch",
                  {"Unknown", "NULL-Info", "Invalid(Undefined)"},
                  "Setting 'Unknown': the definition is of type NULL-Info, the value of type "
                  "Invalid(Undefined)");
    ExpectPass(ExtendedItem(7), Make<ExtendedInfo>("X"));
}

TEST(FilesExplain, FamiliesThatAlwaysPassAreNeverExplained) {
    ExpectPass(ColourItem(1), nullptr);
    ExpectPass(OrientationItem(1), Make<BoolInfo>("B"));
    ExpectPass(StringSparseItem(1), nullptr);
    ExpectPass(LocalizedStringItem(1), nullptr);
    ExpectPass(AddrItem(1), Make<StringInfo>("S"));
    ExpectPass(EndpointItem(1), nullptr);
    ExpectPass(AppEndpointItem(1), nullptr);
    ExpectPass(AppEndpointArrayItem(1), nullptr);
    ExpectPass(CollectionItem(1), nullptr);
}

// Explain and Validate agree on pass and fail over many values.
template <class T>
void SweepNumeric(typename T::Element min, typename T::Element max,
                  std::vector<typename T::Element> const& values) {
    auto info = Make<NumericInfo<T>>("N");
    info->SetMax(max);
    info->SetMin(min);
    NumericItem<T> item(7);
    for (auto const value : values) {
        item.SetVal(value);
        bool const fails = item.Validate(info) != nullptr;
        auto const explained = Explain(item, info);
        // Beyond the model's check, values the record changes are explained too.
        EXPECT_EQ(explained.has_value(), fails || !Check(item, info).empty()) << +value;
        if (explained && fails) {
            EXPECT_EQ(explained->message.GetKey(), value < min ? "TypesSystemNumericValidationMin"
                                                               : "TypesSystemNumericValidationMax");
            EXPECT_FALSE(explained->text.empty());
        }
    }
}

TEST(FilesExplain, NeverDisagreesWithValidate) {
    std::vector<unsigned char> bytes;
    std::vector<signed char> signedBytes;
    for (int i = 0; i < 256; ++i) {
        bytes.push_back(static_cast<unsigned char>(i));
        signedBytes.push_back(static_cast<signed char>(i - 128));
    }
    SweepNumeric<U8Traits>(10, 200, bytes);
    SweepNumeric<S8Traits>(-100, 100, signedBytes);
    std::vector<unsigned short> u16;
    std::vector<short> s16;
    std::vector<unsigned int> u32;
    std::vector<int> s32;
    std::vector<unsigned long long> u64;
    std::vector<long long> s64;
    std::vector<float> f32;
    std::vector<double> f64;
    for (int i = -2000; i <= 2000; i += 7) {
        u16.push_back(static_cast<unsigned short>(i * 30));
        s16.push_back(static_cast<short>(i * 15));
        u32.push_back(static_cast<unsigned int>(i) * 2000000u);
        s32.push_back(i * 1000000);
        u64.push_back(static_cast<unsigned long long>(i) * 9000000000000000ull);
        s64.push_back(static_cast<long long>(i) * 4000000000000000ll);
        f32.push_back(static_cast<float>(i) / 3.f);
        f64.push_back(static_cast<double>(i) / 7.0);
    }
    f32.push_back(std::numeric_limits<float>::quiet_NaN());
    f64.push_back(-std::numeric_limits<double>::infinity());
    SweepNumeric<U16Traits>(1000, 50000, u16);
    SweepNumeric<S16Traits>(-10000, 10000, s16);
    SweepNumeric<U32Traits>(100000000u, 3000000000u, u32);
    SweepNumeric<S32Traits>(-1000000000, 1000000000, s32);
    SweepNumeric<U64Traits>(1ull << 60, 1ull << 63, u64);
    SweepNumeric<S64Traits>(-(1ll << 62), 1ll << 62, s64);
    SweepNumeric<FloatTraits>(-300.f, 300.f, f32);
    SweepNumeric<DoubleTraits>(-100.0, 100.0, f64);

    // Sizes and lengths against every bound pair.
    for (unsigned long long minSize = 0; minSize < 4; ++minSize) {
        for (unsigned long long maxSize = minSize; maxSize < 5; ++maxSize) {
            auto arrayInfo = Make<NumericArrayInfo<S64Traits>>("A");
            arrayInfo->SetMaxSize(maxSize);
            arrayInfo->SetMinSize(minSize);
            auto flagInfo = Make<BoolArrayInfo>("F");
            flagInfo->SetMaxSize(maxSize);
            flagInfo->SetMinSize(minSize);
            auto listInfo = Make<StringArrayInfo>("L");
            listInfo->SetMaxSize(maxSize);
            listInfo->SetMinSize(minSize);
            auto textInfo = Make<StringInfo>("S");
            textInfo->SetMaxLength(maxSize);
            for (std::size_t size = 0; size < 7; ++size) {
                NumericArrayItem<S64Traits> numbers(1);
                numbers.SetVal(std::vector<long long>(size, 5));
                BoolArrayItem flags(1);
                flags.SetVal(std::vector<bool>(size, true));
                StringArrayItem list(1);
                list.SetVal(Strings(size, "x"));
                StringItem text(1);
                text.SetVal(std::string(size, 'x'));
                EXPECT_EQ(Explain(numbers, arrayInfo).has_value(),
                          numbers.Validate(arrayInfo) != nullptr);
                EXPECT_EQ(Explain(flags, flagInfo).has_value(),
                          flags.Validate(flagInfo) != nullptr);
                EXPECT_EQ(Explain(list, listInfo).has_value(), list.Validate(listInfo) != nullptr);
                EXPECT_EQ(Explain(text, textInfo).has_value(), text.Validate(textInfo) != nullptr);
            }
        }
    }
    // Flags against every fixed flag and default.
    for (int bits = 0; bits < 8; ++bits) {
        auto boolInfo = Make<BoolInfo>("B");
        boolInfo->SetFixed(bits & 1);
        boolInfo->SetDefault(bits & 2);
        BoolItem flag(1);
        flag.SetVal(bits & 4);
        EXPECT_EQ(Explain(flag, boolInfo).has_value(), flag.Validate(boolInfo) != nullptr) << bits;
    }
    // Composites of every shape of up to three children of two families.
    auto compositeInfo = Make<CompositeInfo>("C");
    compositeInfo->AddInfo(Make<BoolInfo>("x"));
    compositeInfo->AddInfo(Make<StringInfo>("y"));
    for (int shape = 0; shape < 15; ++shape) {
        CompositeItem composite(1);
        int const count = shape < 1 ? 0 : shape < 3 ? 1 : shape < 7 ? 2 : 3;
        int const first = shape < 1 ? 0 : shape < 3 ? 1 : shape < 7 ? 3 : 7;
        for (int child = 0; child < count; ++child) {
            if ((shape - first) >> child & 1) {
                composite.AddItem(new StringItem(0));
            } else {
                composite.AddItem(new BoolItem(0));
            }
        }
        auto const explained = Explain(composite, compositeInfo);
        EXPECT_EQ(explained.has_value(), composite.Validate(compositeInfo) != nullptr) << shape;
        if (explained && count != 2) {
            EXPECT_EQ(explained->message.GetKey(), "TypesSystemCompositeValidationSize");
        }
    }
    auto enumInfo = Make<EnumInfo>("E", false);
    EnumInfo::Table table(3);
    table[0].value = -3;
    table[1].value = 4;
    table[2].value = 1000;
    enumInfo->SetTable(table);
    for (int value = -10; value < 1100; ++value) {
        EnumItem item(1);
        item.SetVal(value);
        EXPECT_EQ(Explain(item, enumInfo).has_value(), item.Validate(enumInfo) != nullptr);
    }
}

TEST(FilesExplain, TextWithoutACatalogueEntryIsBuiltFromKeyAndArguments) {
    // A pattern that wants more arguments than the check gives yields no
    // catalogue text; the explanation still reads.
    std::string const key = "TypesSystemStringValidationLength";
    Vintor::Localization::SetString(key, "%1% %2% %3%");
    auto info = Make<StringInfo>("Host");
    info->SetMaxLength(1);
    StringItem text(7);
    text.SetVal("ab");
    auto const explained = Explain(text, info);
    Vintor::Localization::SetString(key, "Setting '%1%': the text is longer than %2% characters");
    ASSERT_TRUE(explained.has_value());
    EXPECT_EQ(explained->message.GetKey(), key);
    EXPECT_EQ(explained->text, "TypesSystemStringValidationLength: Host, 1");
    EXPECT_EQ(Explain(text, info)->text, "Setting 'Host': the text is longer than 1 characters");
}

// A class of the caller's own that fails in its own way.
class Picky : public BoolItem {
public:
    using BoolItem::BoolItem;
    std::shared_ptr<ResultElem const> Validate(ConstInfo const& info) const override {
        return BoolItem::Validate(info) ? BoolItem::Validate(info) : BoolItem(0).Validate(nullptr);
    }
};

TEST(FilesExplain, AClassThatFailsItsOwnWayGetsNoKeyButAText) {
    Picky picky(7);
    auto const explained = Explain(picky, Make<BoolInfo>("Flag"));
    ASSERT_TRUE(explained.has_value());
    EXPECT_TRUE(explained->message.IsEmpty());
    EXPECT_EQ(explained->text, "Setting 'Flag': a value of type Bool(Undefined) fails its check");
}

}  // namespace

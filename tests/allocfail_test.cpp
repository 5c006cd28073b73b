// Allocation failures: a replaced operator new fails at the Nth allocation,
// and N sweeps over every allocation of an operation. After each bad_alloc
// the objects are intact, usable and hold what the failure rules keep; the
// sanitizer build checks that nothing leaks.
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <new>
#include <sstream>
#include <string>
#include <vector>

#include <legacy/oru/oru.h>

#include "alloc_count.h"

namespace {

using namespace Legacy::Oru;

// Runs setup, then op with the Nth allocation failing, for N = 1, 2, ...
// until op runs through; check sees the objects after each failure. Answers
// how many failures were injected.
template <class State, class Setup, class Op, class CheckFailed>
int Sweep(Setup setup, Op op, CheckFailed checkFailed) {
    for (long n = 1;; ++n) {
        State state = setup();
        bool failed = false;
        {
            OruTest::FailingAllocation const failing(n);
            try {
                op(state);
            } catch (std::bad_alloc const&) {
                failed = true;
            }
        }
        if (!failed) {
            return static_cast<int>(n - 1);
        }
        SCOPED_TRACE(n);
        checkFailed(state);
        if (::testing::Test::HasFatalFailure() || n > 100000) {
            return -1;
        }
    }
}

boost::intrusive_ptr<ItemBase> Composite() {
    boost::intrusive_ptr<CompositeItem> inner(new CompositeItem(2));
    inner->AddItem(boost::intrusive_ptr<ItemBase>(StringItem::Create(0, "inner text")));
    boost::intrusive_ptr<CompositeItem> item(new CompositeItem(1));
    item->AddItem(boost::intrusive_ptr<ItemBase>(NumericItem<U32Traits>::Create(0, 7)));
    item->AddItem(boost::intrusive_ptr<ItemBase>(StringItem::Create(0, "some text")));
    item->AddItem(inner);
    return item;
}

TEST(AllocFailTest, CompositeRecordsWriteAndReadOrFailCleanly) {
    boost::intrusive_ptr<ItemBase> const source = Composite();
    struct Write {
        ItemBase::SerialStruct_t record;
    };
    int const writes = Sweep<std::shared_ptr<Write>>(
        [] { return std::make_shared<Write>(); },
        [&](std::shared_ptr<Write>& w) { source->Serialize(&w->record); },
        [&](std::shared_ptr<Write>& w) {
            // The record owns whatever was attached to it; the source is untouched.
            EXPECT_EQ(source->GetValAsString(), "(7, some text, (inner text))");
            (void)w;
        });
    EXPECT_GT(writes, 0);

    ItemBase::SerialStruct_t record;
    ASSERT_EQ(source->Serialize(&record), 0);
    ItemBase::ConstSerialStruct_t const view(record);
    int const reads =
        Sweep<boost::intrusive_ptr<ItemBase>>([] { return boost::intrusive_ptr<ItemBase>(); },
                                              [&](boost::intrusive_ptr<ItemBase>& item) {
                                                  ASSERT_EQ(ItemBase::Deserialize(&view, item), 0);
                                              },
                                              [&](boost::intrusive_ptr<ItemBase>& item) {
                                                  // Whatever was made is usable: it prints, and
                                                  // reads the record now.
                                                  if (item) {
                                                      (void)item->GetValAsString();
                                                  }
                                                  boost::intrusive_ptr<ItemBase> again;
                                                  EXPECT_EQ(ItemBase::Deserialize(&view, again), 0);
                                                  EXPECT_TRUE(again->IsEqualValue(source));
                                              });
    EXPECT_GT(reads, 3);
}

TEST(AllocFailTest, ContainerAddIsAllOrNothing) {
    using Ptr = boost::intrusive_ptr<InfoBase>;
    auto make = [](unsigned int id, char const* name) {
        return Ptr(new NumericInfo<U8Traits>(id, name, Permission_t()));
    };
    std::vector<Ptr> const batch = {make(3, "c"), make(4, "d"), make(5, "e"), make(6, "f")};
    int const failures = Sweep<std::shared_ptr<InfoContainer>>(
        [&] {
            auto container = std::make_shared<InfoContainer>();
            container->Add(make(1, "a"));
            container->Add(make(2, "b"));
            return container;
        },
        [&](std::shared_ptr<InfoContainer>& c) { EXPECT_EQ(c->Add(batch), 0); },
        [&](std::shared_ptr<InfoContainer>& c) {
            // A failing insert leaves the container as it was.
            EXPECT_EQ(c->Size(), 2u);
            EXPECT_FALSE(c->IsPresent(3));
            EXPECT_TRUE(c->Find("b"));
            EXPECT_EQ(c->Add(batch), 0);
            EXPECT_EQ(c->Size(), 6u);
        });
    EXPECT_GT(failures, 0);
}

TEST(AllocFailTest, HolderMapInsertIsAllOrNothing) {
    auto slot = [](unsigned int id, char const* name) {
        boost::intrusive_ptr<InfoBase> info(new NumericInfo<U8Traits>(id, name, Permission_t()));
        boost::intrusive_ptr<InfoHolder const> holder(new InfoHolder(info));
        return boost::intrusive_ptr<InfoItemHolder>(new InfoItemHolder(holder));
    };
    auto const added = slot(9, "nine");
    int const failures = Sweep<std::shared_ptr<InfoItemHolderMap>>(
        [&] {
            auto map = std::make_shared<InfoItemHolderMap>();
            map->Insert(slot(1, "one"));
            return map;
        },
        [&](std::shared_ptr<InfoItemHolderMap>& map) { EXPECT_EQ(map->Insert(added), 0); },
        [&](std::shared_ptr<InfoItemHolderMap>& map) {
            EXPECT_EQ(map->Size(), 1u);
            EXPECT_FALSE(map->Find(9).first);
            EXPECT_TRUE(map->Find(std::string("nine")).first ==
                        map->Find(std::string("nine")).second);
            EXPECT_EQ(map->Insert(added), 0);
            EXPECT_TRUE(map->Find(9).first);
        });
    EXPECT_GT(failures, 0);
}

struct Directory {
    InfoItemDirectory directory;
    SectionId section;
};

std::shared_ptr<Directory> MakeDirectory() {
    auto d = std::make_shared<Directory>();
    d->directory.AddSection("Audio/Input", d->section);
    return d;
}

boost::intrusive_ptr<InfoHolder const> InfoIn(Directory const& d, std::size_t number,
                                              char const* name) {
    boost::intrusive_ptr<InfoBase> info(new NumericInfo<U32Traits>(
        d.section.GetInfoItemSectionId().CreateInfoItemId(number), name, Permission_t()));
    return boost::intrusive_ptr<InfoHolder const>(new InfoHolder(info));
}

boost::intrusive_ptr<ItemHolder const> ItemFor(unsigned int id, unsigned int value) {
    boost::intrusive_ptr<ItemBase> item(NumericItem<U32Traits>::Create(id, value));
    return boost::intrusive_ptr<ItemHolder const>(new ItemHolder(item));
}

TEST(AllocFailTest, DirectoryAddInfoAndSetItemKeepTheDirectoryWhole) {
    auto const probe = MakeDirectory();
    auto const gain = InfoIn(*probe, 5, "Gain");
    unsigned int const id = gain->GetInfo()->GetId();
    int const adds = Sweep<std::shared_ptr<Directory>>(
        MakeDirectory,
        [&](std::shared_ptr<Directory>& d) { EXPECT_EQ(d->directory.AddInfo(gain), 0); },
        [&](std::shared_ptr<Directory>& d) {
            // Either the setting is wholly there or wholly absent, and adding works.
            bool const byId = static_cast<bool>(d->directory.FindInfo(id));
            bool const byPath = static_cast<bool>(d->directory.FindInfoItem("Audio/Input/Gain"));
            EXPECT_EQ(byId, byPath);
            if (!byId) {
                EXPECT_EQ(d->directory.AddInfo(gain), 0);
            }
            EXPECT_TRUE(d->directory.FindInfoItem("Audio/Input/Gain"));
        });
    EXPECT_GT(adds, 0);

    int const sets = Sweep<std::shared_ptr<Directory>>(
        [&] {
            auto d = MakeDirectory();
            d->directory.AddInfo(gain);
            d->directory.SetItem(ItemFor(id, 1));
            return d;
        },
        [&](std::shared_ptr<Directory>& d) { EXPECT_EQ(d->directory.SetItem(ItemFor(id, 2)), 0); },
        [&](std::shared_ptr<Directory>& d) {
            auto const item = d->directory.FindItem(id);
            ASSERT_TRUE(item);
            EXPECT_EQ(item->GetItem()->GetValAsString(), "1");
            EXPECT_EQ(d->directory.SetItem(ItemFor(id, 2)), 0);
        });
    EXPECT_GE(sets, 0);
}

TEST(AllocFailTest, DeltaKeepsWhatWasApplied) {
    auto const probe = MakeDirectory();
    std::vector<boost::intrusive_ptr<InfoHolder const>> const infos = {
        InfoIn(*probe, 1, "a"), InfoIn(*probe, 2, "b"), InfoIn(*probe, 3, "c")};
    auto delta = std::make_shared<InfoItemDirectoryDelta>();
    for (auto const& info : infos) {
        delta->AddInfo(info);
        delta->AddItem(ItemFor(info->GetInfo()->GetId(), 40 + info->GetInfo()->GetId() % 8));
    }
    int const failures = Sweep<std::shared_ptr<Directory>>(
        MakeDirectory,
        [&](std::shared_ptr<Directory>& d) {
            EXPECT_EQ(d->directory.UpdateFromDelta(delta, true, true), 0);
        },
        [&](std::shared_ptr<Directory>& d) {
            // What was applied stays, in ascending id order, infos before items:
            // a prefix of the infos, and items only once every info is in.
            std::vector<boost::intrusive_ptr<InfoItemHolder const>> all;
            d->directory.GetAllInfoItems(all);
            for (std::size_t i = 0; i < all.size(); ++i) {
                EXPECT_EQ(all[i]->GetInfoHolder()->GetInfo()->GetId(),
                          infos[i]->GetInfo()->GetId());
            }
            bool anyItem = false;
            for (auto const& slot : all) {
                anyItem = anyItem || (slot->GetItemHolder() && slot->GetItemHolder()->GetItem());
            }
            EXPECT_TRUE(!anyItem || all.size() == infos.size());
            // Applying the whole delta again completes it.
            EXPECT_EQ(d->directory.UpdateFromDelta(delta, true, true), 0);
            d->directory.GetAllInfoItems(all);
            EXPECT_EQ(all.size(), infos.size());
        });
    EXPECT_GT(failures, 0);
}

}  // namespace

namespace {

// Long enough that every copy of it allocates (past the small-string buffer).
std::string const k_long = "a-text-well-past-the-small-string-buffer";

// Runs op with the Nth allocation failing, N = 1, 2, ... until it runs
// through. op keeps nothing it makes, so after every failure as after the
// success no allocation may be left; the objects op reads must still print
// as before. Answers the number of failures injected.
template <class Op>
int SweepNoLeak(Op op, std::function<std::string()> const& state) {
    op();  // first-use statics (locale facets, loggers) are not leaks
    std::string const before = state();
    for (long n = 1; n < 100000; ++n) {
        long const live = OruTest::LiveAllocations();
        bool failed = false;
        {
            OruTest::FailingAllocation const failing(n);
            try {
                op();
            } catch (std::bad_alloc const&) {
                failed = true;
            }
        }
        SCOPED_TRACE(n);
        EXPECT_EQ(OruTest::LiveAllocations(), live) << "allocations left behind";
        EXPECT_EQ(state(), before);
        if (!failed || ::testing::Test::HasFailure()) {
            return static_cast<int>(n - 1);
        }
    }
    return -1;
}

using InfoPtr = boost::intrusive_ptr<InfoBase>;
using ItemPtr = boost::intrusive_ptr<ItemBase>;

struct Family {
    char const* name;
    InfoPtr info;
    ItemPtr item;  // holds a value whose copies allocate
};

template <class I>
InfoPtr MakeInfo() {
    return InfoPtr(new I(0x40000005, k_long, Permission_t(3)));
}

// An Item of the Info's class read from text.
Family Read(char const* name, InfoPtr const& info, std::string const& text) {
    ItemPtr item(info->CreateItem());
    std::istringstream in(text);
    std::ostringstream errors;
    EXPECT_TRUE(item->SetValFromStream(in, errors, info)) << name << ": " << errors.str();
    return Family{name, info, item};
}

InfoPtr Enumeration() {
    boost::intrusive_ptr<EnumInfo> info(new EnumInfo(0x40000005, k_long, Permission_t(3), false));
    info->SetTable({{k_long, 3, false}, {k_long + "-too", 4, true}});
    return info;
}

std::string Count(int n, std::string const& word) {
    std::string text = std::to_string(n);
    for (int i = 0; i < n; ++i) {
        text += " " + word;
    }
    return text;
}

std::vector<Family> Families() {
    std::vector<Family> families = {
        Read("Bool", MakeInfo<BoolInfo>(), "1"),
        Read("Numeric", MakeInfo<NumericInfo<U32Traits>>(), "72"),
        Read("NumericArray", MakeInfo<NumericArrayInfo<U16Traits>>(), Count(40, "65535")),
        Read("NumericSparse", MakeInfo<NumericSparseInfo<S8Traits>>(), "-7"),
        Read("Enum", Enumeration(), "3"),
        Read("String", MakeInfo<StringInfo>(), k_long),
        Read("StringArray", MakeInfo<StringArrayInfo>(), Count(3, k_long)),
        Read("BoolArray", MakeInfo<BoolArrayInfo>(), Count(40, "1")),
        Read("StringSparse", MakeInfo<StringSparseInfo>(), k_long),
        Read("Colour", MakeInfo<ColourInfo>(), "(0 1 2 255"),
        Read("Coordinate", MakeInfo<CoordinateInfo<S32Traits>>(), "-5 7"),
        Read("Rect", MakeInfo<RectInfo<FloatTraits>>(), "1 2 3 4"),
        Read("RectArray", MakeInfo<RectArrayInfo<U16Traits>>(), "3 1 2 3 4 5 6 7 8 9 10 11 12"),
        Read("Addr", MakeInfo<AddrInfo>(), k_long + ".example"),
        Read("Endpoint", MakeInfo<EndpointInfo>(), k_long + ".example:8080"),
        Read("AppEndpoint", MakeInfo<AppEndpointInfo>(), k_long + ".example:80"),
    };
    InfoPtr const endpoints = MakeInfo<AppEndpointArrayInfo>();
    boost::intrusive_ptr<AppEndpointArrayItem> array(
        static_cast<AppEndpointArrayItem*>(endpoints->CreateItem()));
    array->SetVal({AppEndpoint<Net::Endpoint<Net::AddrStr>>::FromUri("rtsp://" + k_long + "/a"),
                   AppEndpoint<Net::Endpoint<Net::AddrStr>>::FromUri("http://" + k_long + "/b")});
    families.push_back(Family{"AppEndpointArray", endpoints, array});

    boost::intrusive_ptr<CompositeInfo> composite(
        new CompositeInfo(0x40000005, k_long, Permission_t(3)));
    composite->AddInfo(MakeInfo<StringInfo>());
    composite->AddInfo(MakeInfo<NumericArrayInfo<U8Traits>>());
    boost::intrusive_ptr<CompositeItem> children(new CompositeItem(0x40000005));
    children->AddItem(ItemPtr(StringItem::Create(0, k_long)));
    children->AddItem(Composite());
    families.push_back(Family{"Composite", composite, children});

    for (InfoPtr const& info :
         {MakeInfo<LocalizedStringInfo>(), MakeInfo<ExtendedInfo>(), MakeInfo<CollectionInfo>()}) {
        families.push_back(Family{"no text form", info, ItemPtr(info->CreateItem())});
    }
    return families;
}

// Every operation that creates an object, for every family, with values
// that allocate: an allocation that fails leaks nothing and leaves the
// objects it read as they were.
TEST(AllocFailTest, CreatingOperationsOfEveryFamilyLeakNothing) {
    InfoPtr const foreign(new NumericInfo<S64Traits>(1, k_long, Permission_t()));
    for (Family const& family : Families()) {
        SCOPED_TRACE(family.name);
        ItemPtr const& item = family.item;
        InfoPtr const& info = family.info;
        auto const state = [&] { return item->GetValAsString() + "|" + info->GetName(); };
        EXPECT_GT(SweepNoLeak([&] { ItemPtr copy(item->DeepCopy()); }, state), 0);
        EXPECT_GT(SweepNoLeak([&] { ItemPtr copy(item->DeepCopy(9)); }, state), 0);
        EXPECT_GT(SweepNoLeak([&] { InfoPtr copy(info->DeepCopy()); }, state), 0);
        SweepNoLeak([&] { ItemPtr made(info->CreateItem()); }, state);
        // A failed check composes its message and copies the item (some
        // families pass whatever the Info).
        SweepNoLeak([&] { (void)item->Validate(foreign); }, state);
        SweepNoLeak(
            [&] {
                ItemPtr target(info->CreateItem());
                (void)target->AssignArrayValue(item, 0, nullptr);
            },
            state);
        SweepNoLeak(
            [&] {
                std::istringstream in(item->GetValAsString());
                std::ostringstream errors;
                ItemPtr target(info->CreateItem());
                (void)target->SetValFromStream(in, errors, info);
            },
            state);
        if (::testing::Test::HasFailure()) {
            return;
        }
    }
}

}  // namespace

// Sharing between threads as the library allows it: reference counts from
// anywhere, const reads of shared objects while nobody writes (lookups in a
// directory, composites sharing children written and read, deep copies),
// logging into one facade, the localisation catalogue written beside
// readers. Run under ThreadSanitizer by `make test-tsan`.
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include <vintor/vintor.h>

#include <legacy/oru/oru.h>

namespace {

using namespace Legacy::Oru;

constexpr int k_threads = 4;

template <class F>
void InThreads(F const& work) {
    std::vector<std::thread> threads;
    for (int t = 0; t < k_threads; ++t) {
        threads.emplace_back([&work, t] { work(t); });
    }
    for (auto& thread : threads) {
        thread.join();
    }
}

TEST(ThreadsTest, ReferenceCountsFromManyThreads) {
    boost::intrusive_ptr<NumericInfo<U32Traits>> info(
        new NumericInfo<U32Traits>(1, "n", Permission_t()));
    boost::intrusive_ptr<ItemBase> item(info->CreateItem());
    InThreads([&](int) {
        for (int i = 0; i < 20000; ++i) {
            boost::intrusive_ptr<NumericInfo<U32Traits>> infoCopy = info;
            boost::intrusive_ptr<ItemBase> itemCopy = item;
        }
    });
    EXPECT_EQ(info->GetRefCount(), 1);
    EXPECT_EQ(item->GetRefCount(), 1);

    // The last reference may be dropped on any thread.
    std::vector<boost::intrusive_ptr<ItemBase>> shared(k_threads, item);
    item.reset();
    InThreads([&](int t) { shared[static_cast<std::size_t>(t)].reset(); });
}

TEST(ThreadsTest, ConstReadsOfSharedSettings) {
    boost::intrusive_ptr<NumericInfo<S32Traits>> info(
        new NumericInfo<S32Traits>(5, "n", Permission_t()));
    info->SetMin(-10);
    info->SetMax(10);
    boost::intrusive_ptr<NumericItem<S32Traits>> item(NumericItem<S32Traits>::Create(5, 3));
    boost::intrusive_ptr<NumericItem<S32Traits>> bad(NumericItem<S32Traits>::Create(5, 30));
    boost::intrusive_ptr<StringItem> text(StringItem::Create(5, "shared"));
    std::atomic<int> mismatches{0};
    InThreads([&](int) {
        for (int i = 0; i < 2000; ++i) {
            if (item->Validate(info) || !bad->Validate(info)) {
                ++mismatches;
            }
            ItemBase::SerialStruct_t record;
            if (item->Serialize(&record) != 0 || text->GetValAsString() != "shared") {
                ++mismatches;
            }
            ItemBase::ConstSerialStruct_t const view(record);
            boost::intrusive_ptr<ItemBase> back;
            if (ItemBase::Deserialize(&view, back) != 0 || !back->IsEqualValue(item)) {
                ++mismatches;
            }
        }
    });
    EXPECT_EQ(mismatches.load(), 0);
}

TEST(ThreadsTest, ManyThreadsLogIntoOneFacade) {
    auto logger = Vintor::LogManager::Instance().GetLogger("Test.Threads", nullptr, {});
    boost::intrusive_ptr<ItemBase const> item(NumericItem<U8Traits>::Create(1, 1));
    auto result = std::make_shared<Result>(1);
    result->AddResultElem(
        std::make_shared<ResultElem const>(static_cast<Vintor::SeverityLevel_t>(4), item, nullptr));
    InThreads([&](int) {
        for (int i = 0; i < 500; ++i) {
            result->LogResults(logger, "thread");
        }
    });
    EXPECT_EQ(result->GetNumResults(), 1u);
}

TEST(ThreadsTest, CatalogueWritesBesideReads) {
    Vintor::Localization::SetString("Test.Threaded", "v%1%");
    std::atomic<int> empty{0};
    InThreads([&](int t) {
        for (int i = 0; i < 2000; ++i) {
            if (t == 0) {
                Vintor::Localization::SetString("Test.Threaded", i % 2 ? "v%1%" : "w%1%");
            } else {
                LocalizedString message("Test.Threaded");
                message.AddArgument(
                    boost::intrusive_ptr<ItemBase const>(StringItem::Create(0, "x")));
                if (message.GetString("").size() != 2) {
                    ++empty;
                }
            }
        }
    });
    EXPECT_EQ(empty.load(), 0);
}

// Lookups by id, by path and by section in one directory nobody writes.
TEST(ThreadsTest, ConcurrentLookupsInOneDirectory) {
    InfoItemDirectory directory;
    SectionId section;
    ASSERT_EQ(directory.AddSection("Audio/Input", section), 0);
    unsigned int const sectionId = section.GetInfoItemSectionId();
    for (unsigned int n = 1; n <= 32; ++n) {
        unsigned int const id = section.GetInfoItemSectionId().CreateInfoItemId(n);
        boost::intrusive_ptr<InfoBase> info(
            new NumericInfo<U32Traits>(id, "Gain" + std::to_string(n), Permission_t()));
        ASSERT_EQ(directory.AddInfo(boost::intrusive_ptr<InfoHolder const>(new InfoHolder(info))),
                  0);
    }
    InfoItemDirectory const& shared = directory;
    std::atomic<int> misses{0};
    InThreads([&](int t) {
        for (int i = 0; i < 500; ++i) {
            unsigned int const n = 1 + static_cast<unsigned int>(i + t) % 32;
            unsigned int const id = InfoItemSectionId(sectionId).CreateInfoItemId(n);
            auto const byId = shared.FindInfoItem(id);
            auto const byPath = shared.FindInfoItem("Audio/Input/Gain" + std::to_string(n));
            if (!byId || byId != byPath) {
                ++misses;
            }
            std::vector<boost::intrusive_ptr<InfoItemHolder const>> all;
            if (shared.FindInfoItems(sectionId, all) != 0 || all.size() != 32) {
                ++misses;
            }
        }
    });
    EXPECT_EQ(misses.load(), 0);
}

// Composites that share their children are written and read on several
// threads at once: the writer's placed payload and the reader's depth count
// are per thread.
TEST(ThreadsTest, CompositesSharingChildrenWriteAndReadOnManyThreads) {
    boost::intrusive_ptr<ItemBase> const child(StringItem::Create(0, "a child shared by all"));
    boost::intrusive_ptr<CompositeItem> inner(new CompositeItem(0));
    inner->AddItem(child);
    std::vector<boost::intrusive_ptr<CompositeItem>> composites;
    for (int t = 0; t < k_threads; ++t) {
        boost::intrusive_ptr<CompositeItem> composite(new CompositeItem(7));
        composite->AddItem(child);
        composite->AddItem(inner);
        composite->AddItem(boost::intrusive_ptr<ItemBase>(NumericItem<U16Traits>::Create(0, 65)));
        composites.push_back(composite);
    }
    std::atomic<int> mismatches{0};
    InThreads([&](int t) {
        auto const& mine = composites[static_cast<std::size_t>(t)];
        for (int i = 0; i < 500; ++i) {
            ItemBase::SerialStruct_t record;
            if (mine->Serialize(&record) != 0) {
                ++mismatches;
                continue;
            }
            ItemBase::ConstSerialStruct_t const view(record);
            boost::intrusive_ptr<ItemBase> back;
            if (ItemBase::Deserialize(&view, back) != 0 || !back->IsEqualValue(mine)) {
                ++mismatches;
            }
        }
    });
    EXPECT_EQ(mismatches.load(), 0);
    EXPECT_EQ(child->GetValAsString(), "a child shared by all");
}

// DeepCopy of objects that other threads copy at the same time.
TEST(ThreadsTest, DeepCopiesOfSharedObjects) {
    boost::intrusive_ptr<CompositeItem> composite(new CompositeItem(3));
    composite->AddItem(boost::intrusive_ptr<ItemBase>(StringItem::Create(0, "deep text")));
    boost::intrusive_ptr<CoordinateItem<S32Traits>> point(new CoordinateItem<S32Traits>(4));
    point->SetValX(-5);
    point->SetValY(7);
    boost::intrusive_ptr<CompositeInfo> info(new CompositeInfo(3, "c", Permission_t()));
    info->AddInfo(boost::intrusive_ptr<InfoBase>(new StringInfo(0, "s", Permission_t())));
    std::atomic<int> mismatches{0};
    InThreads([&](int) {
        for (int i = 0; i < 500; ++i) {
            boost::intrusive_ptr<ItemBase> const copy(composite->DeepCopy());
            boost::intrusive_ptr<ItemBase> const pointCopy(point->DeepCopy(9));
            boost::intrusive_ptr<InfoBase> const infoCopy(info->DeepCopy());
            if (!copy->IsEqualValue(composite) ||
                pointCopy->GetValAsString() != point->GetValAsString() ||
                !infoCopy->IsEqualType(info)) {
                ++mismatches;
            }
        }
    });
    EXPECT_EQ(mismatches.load(), 0);
}

}  // namespace

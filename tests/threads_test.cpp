// Sharing between threads as the library allows it: reference counts from
// anywhere, const reads of shared objects while nobody writes, logging into
// one facade, the localisation catalogue written beside readers. Run under
// ThreadSanitizer by `make test-tsan`.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include <vintor/vintor.h>

#include <legacy/oru/oru.h>

namespace {

using namespace Legacy::Oru;

constexpr int kThreads = 4;

template <class F>
void InThreads(F const& work) {
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
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
    std::vector<boost::intrusive_ptr<ItemBase>> shared(kThreads, item);
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

}  // namespace

#include <legacy/oru/genericcontainer.h>

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "directory_test_util.h"

namespace {

using namespace OruTest;

template <class T>
using Container =
    GenericContainer<T, boost::intrusive_ptr<T>, boost::intrusive_ptr<T const>, unsigned int>;

// How each element class of the container is made and looked into.
template <class T>
struct Elements;

template <>
struct Elements<InfoBase> {
    static boost::intrusive_ptr<InfoBase> Make(unsigned int id, std::string const& name) {
        return U32Info(id, name);
    }
    static void const* Held(InfoBase const& info) { return &info; }
};

template <>
struct Elements<ItemBase> {
    static boost::intrusive_ptr<ItemBase> Make(unsigned int id, std::string const&) {
        return U32Item(id, id * 2);
    }
    static void const* Held(ItemBase const& item) { return &item; }
};

template <>
struct Elements<InfoHolder> {
    static boost::intrusive_ptr<InfoHolder> Make(unsigned int id, std::string const& name) {
        return U32InfoHolder(id, name);
    }
    static void const* Held(InfoHolder const& holder) { return holder.GetInfo().get(); }
};

template <>
struct Elements<ItemHolder> {
    static boost::intrusive_ptr<ItemHolder> Make(unsigned int id, std::string const&) {
        return U32ItemHolder(id, id * 2);
    }
    static void const* Held(ItemHolder const& holder) { return holder.GetItem().get(); }
};

template <class T>
class GenericContainerTypedTest : public ::testing::Test {
protected:
    using PtrT = boost::intrusive_ptr<T>;
    using ConstPtrT = boost::intrusive_ptr<T const>;
    using ImplT = GenericContainerImpl<T, PtrT, ConstPtrT, unsigned int>;

    static PtrT Make(unsigned int id, std::string const& name = "n") {
        return Elements<T>::Make(id, name);
    }

    // The ids of all elements, in the order Get(out) gives them.
    template <class C>
    static std::vector<unsigned int> Ids(C const& container) {
        std::vector<PtrT> all;
        container.Get(all);
        std::vector<unsigned int> ids;
        for (auto const& element : all) {
            ids.push_back(GenericContainerKeys<T>::GetId(*element));
        }
        return ids;
    }
};

using ElementClasses = ::testing::Types<InfoBase, ItemBase, InfoHolder, ItemHolder>;
TYPED_TEST_SUITE(GenericContainerTypedTest, ElementClasses);

using Ids = std::vector<unsigned int>;

TYPED_TEST(GenericContainerTypedTest, EmptyContainerAnswersNothingAndAcceptsEmptyVectors) {
    Container<TypeParam> container;
    std::vector<typename TestFixture::PtrT> out;
    container.Get(out);
    EXPECT_TRUE(out.empty());
    EXPECT_FALSE(container.Get(1));
    EXPECT_EQ(container.Remove(1), -25);
    EXPECT_EQ(container.Add(std::vector<typename TestFixture::PtrT>{}), 0);
    EXPECT_EQ(container.Remove(Ids{}), 0);
    EXPECT_TRUE(container.Empty());
    EXPECT_EQ(container.Size(), 0u);
}

TYPED_TEST(GenericContainerTypedTest, AddIsAllOrNothingAgainstWhatWasThere) {
    using Ptr = typename TestFixture::PtrT;
    Container<TypeParam> container;
    auto const a = this->Make(1);
    auto const b = this->Make(2);
    EXPECT_EQ(container.Add(Ptr()), 0);
    EXPECT_TRUE(container.Empty());
    EXPECT_EQ(container.Add(std::vector<Ptr>{a, Ptr(), b}), 0);
    EXPECT_EQ(this->Ids(container), (Ids{1, 2}));

    // One present id refuses the whole vector, even the new id before it.
    EXPECT_EQ(container.Add(std::vector<Ptr>{this->Make(3), this->Make(2)}), -51);
    EXPECT_EQ(this->Ids(container), (Ids{1, 2}));
    EXPECT_EQ(container.Get(2), b);
    auto const otherB = this->Make(2);
    EXPECT_EQ(container.Add(otherB), -51);
    EXPECT_EQ(container.Get(2), b);

    // A repeated id inside one vector is accepted; the later one stays.
    auto const first = this->Make(7);
    auto const second = this->Make(7);
    EXPECT_EQ(container.Add(std::vector<Ptr>{first, second}), 0);
    EXPECT_EQ(container.Get(7), second);
    EXPECT_EQ(container.Size(), 3u);

    container.Set(otherB);
    EXPECT_EQ(container.Get(2), otherB);
    container.Set(Ptr());
    EXPECT_EQ(container.Size(), 3u);
    EXPECT_EQ(b->GetRefCount(), 1);  // released by the replacement
}

TYPED_TEST(GenericContainerTypedTest, RemoveIsAllOrNothingAndReleases) {
    Container<TypeParam> container;
    auto const a = this->Make(1);
    container.Set(a);
    container.Set(this->Make(2));
    EXPECT_EQ(a->GetRefCount(), 2);
    EXPECT_EQ(container.Remove(Ids{1, 9}), -25);
    EXPECT_EQ(this->Ids(container), (Ids{1, 2}));
    EXPECT_EQ(container.Remove(Ids{1, 1}), 0);
    EXPECT_EQ(this->Ids(container), (Ids{2}));
    EXPECT_EQ(a->GetRefCount(), 1);
    EXPECT_EQ(container.Remove(2), 0);
    EXPECT_EQ(container.Remove(2), -25);
    EXPECT_TRUE(container.Empty());
}

TYPED_TEST(GenericContainerTypedTest, GetAppendsInIdOrderAndStopsAtTheFirstAbsentId) {
    using Ptr = typename TestFixture::PtrT;
    using ConstPtr = typename TestFixture::ConstPtrT;
    Container<TypeParam> container;
    for (unsigned int id : {30u, 10u, 20u}) {
        container.Set(this->Make(id));
    }
    auto const marker = this->Make(99);
    std::vector<Ptr> out{marker};
    container.Get(out);
    ASSERT_EQ(out.size(), 4u);
    EXPECT_EQ(out[0], marker);
    EXPECT_EQ(this->Ids(container), (Ids{10, 20, 30}));
    std::vector<ConstPtr> constOut;
    container.Get(constOut);
    ASSERT_EQ(constOut.size(), 3u);
    EXPECT_EQ(constOut[0], container.Get(10));

    std::vector<Ptr> some{marker};
    EXPECT_EQ(container.Get(Ids{20, 10, 5, 30}, some), -25);
    ASSERT_EQ(some.size(), 3u);
    EXPECT_EQ(some[1], container.Get(20));
    EXPECT_EQ(some[2], container.Get(10));
    EXPECT_EQ(container.Get(Ids{30, 30}, some), 0);
    EXPECT_EQ(some.size(), 5u);

    Ptr single = marker;
    EXPECT_EQ(container.Get(5, single), -25);
    EXPECT_FALSE(single);
    EXPECT_EQ(container.Get(20, single), 0);
    EXPECT_EQ(single, container.Get(20));
    EXPECT_TRUE(container.IsPresent(30));
    EXPECT_FALSE(container.IsPresent(31));
}

TYPED_TEST(GenericContainerTypedTest, HandleCopiesDeeplyImplCopiesShallowly) {
    using Ptr = typename TestFixture::PtrT;
    using Impl = typename TestFixture::ImplT;
    Container<TypeParam> source;
    source.Set(this->Make(1, "a"));
    source.Set(this->Make(2, "b"));

    Container<TypeParam> copy(source);
    EXPECT_EQ(this->Ids(copy), (Ids{1, 2}));
    for (unsigned int id : {1u, 2u}) {
        ASSERT_TRUE(copy.Get(id));
        EXPECT_NE(copy.Get(id), source.Get(id));
        EXPECT_NE(Elements<TypeParam>::Held(*copy.Get(id)),
                  Elements<TypeParam>::Held(*source.Get(id)));
        EXPECT_EQ(source.Get(id)->GetRefCount(), 2);  // the container's and ours
    }
    auto const original = source.Get(1);
    copy.Set(this->Make(1, "c"));
    copy.Set(this->Make(3));
    EXPECT_EQ(source.Get(1), original);
    EXPECT_EQ(this->Ids(source), (Ids{1, 2}));

    Container<TypeParam> assigned;
    assigned.Set(this->Make(8));
    assigned = source;
    EXPECT_EQ(this->Ids(assigned), (Ids{1, 2}));
    EXPECT_NE(assigned.Get(1), source.Get(1));
    auto const& self = assigned;
    assigned = self;
    EXPECT_EQ(this->Ids(assigned), (Ids{1, 2}));

    Impl impl;
    auto const shared = this->Make(5);
    impl.Set(shared);
    Impl view(impl);
    EXPECT_EQ(view.Get(5), shared);
    EXPECT_EQ(shared->GetRefCount(), 3);
    Impl other;
    other.Set(this->Make(6));
    other = impl;
    EXPECT_EQ(other.Get(5), shared);
    EXPECT_FALSE(other.IsPresent(6));
    std::unique_ptr<Impl> deep(impl.DeepCopy());
    ASSERT_TRUE(deep->Get(5));
    EXPECT_NE(deep->Get(5), shared);
    EXPECT_EQ(shared->GetRefCount(), 4);  // the three impls and ours
    view.Set(Ptr(this->Make(6)));
    EXPECT_FALSE(impl.IsPresent(6));  // the index is the view's own
}

// Infos and info holders: several elements may bear one name.
template <class T>
class NamedContainerTest : public GenericContainerTypedTest<T> {};
using NamedClasses = ::testing::Types<InfoBase, InfoHolder>;
TYPED_TEST_SUITE(NamedContainerTest, NamedClasses);

TYPED_TEST(NamedContainerTest, NamesAreFoundAndFollowReplacements) {
    Container<TypeParam> container;
    container.Set(this->Make(1, "Gain"));
    container.Set(this->Make(2, "Gain"));
    container.Set(this->Make(3, "Level"));
    EXPECT_EQ(container.Size(), 3u);

    unsigned int id = 77;
    EXPECT_FALSE(container.FindId("Missing", id));
    EXPECT_EQ(id, 77u);
    EXPECT_FALSE(container.Find("Missing"));
    ASSERT_TRUE(container.FindId("Gain", id));
    ASSERT_TRUE(id == 1 || id == 2) << id;
    EXPECT_EQ(container.Find("Gain"), container.Get(id));
    ASSERT_EQ(container.Remove(id), 0);
    unsigned int const other = 3 - id;
    EXPECT_EQ(container.Find("Gain"), container.Get(other));

    container.Set(this->Make(3, "Volume"));
    EXPECT_FALSE(container.Find("Level"));
    EXPECT_TRUE(container.FindId("Volume", id));
    EXPECT_EQ(id, 3u);
    EXPECT_EQ(container.Size(), 2u);
}

template <class T>
class ItemContainerTest : public GenericContainerTypedTest<T> {};
using ItemClasses = ::testing::Types<ItemBase, ItemHolder>;
TYPED_TEST_SUITE(ItemContainerTest, ItemClasses);

TYPED_TEST(ItemContainerTest, ItemsShareTheEmptyName) {
    Container<TypeParam> container;
    container.Set(this->Make(1));
    container.Set(this->Make(2));
    unsigned int id = 77;
    EXPECT_FALSE(container.Find("n"));
    EXPECT_FALSE(container.FindId("n", id));
    EXPECT_EQ(id, 77u);
    ASSERT_TRUE(container.Find(""));
    ASSERT_TRUE(container.FindId("", id));
    EXPECT_TRUE(id == 1 || id == 2) << id;
    ASSERT_EQ(container.Remove(1), 0);
    ASSERT_EQ(container.Remove(2), 0);
    EXPECT_FALSE(container.Find(""));
}

}  // namespace

#include "TavioIpadSDK/machine/descriptor.h"

#include <fcntl.h>
#include <type_traits>

#include <gtest/gtest.h>

namespace tavio::machine {
namespace {

static_assert(!std::is_copy_constructible_v<Descriptor>);
static_assert(!std::is_copy_assignable_v<Descriptor>);
static_assert(std::is_nothrow_move_constructible_v<Descriptor>);
static_assert(std::is_nothrow_move_assignable_v<Descriptor>);

int opened() {
    return ::open("/dev/null", O_RDWR | O_CLOEXEC);
}

bool isOpen(int number) {
    return ::fcntl(number, F_GETFD) >= 0;
}

TEST(Descriptor, OwnsNoneAtFirst) {
    const Descriptor none;
    EXPECT_FALSE(none.isOpen());
    EXPECT_LT(none.get(), 0);
}

TEST(Descriptor, ClosesAtTheEndOfItsScope) {
    const int number = opened();
    {
        const Descriptor file(number);
        EXPECT_TRUE(file.isOpen());
        EXPECT_EQ(file.get(), number);
    }
    EXPECT_FALSE(isOpen(number));
}

TEST(Descriptor, HandsItsNumberOnWhenItIsMoved) {
    const int number = opened();
    Descriptor first(number);
    Descriptor second(std::move(first));
    EXPECT_FALSE(first.isOpen());  // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(second.get(), number);

    const int replaced = opened();
    Descriptor third(replaced);
    third = std::move(second);
    EXPECT_FALSE(second.isOpen());  // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(third.get(), number);
    EXPECT_FALSE(isOpen(replaced));
    EXPECT_TRUE(isOpen(number));
}

TEST(Descriptor, StaysOpenWhenItIsMovedOntoItself) {
    Descriptor file(opened());
    Descriptor& itself = file;
    file = std::move(itself);
    EXPECT_TRUE(isOpen(file.get()));
}

TEST(Descriptor, LeavesWhatItReleasesOpen) {
    Descriptor file(opened());
    const int number = file.release();
    EXPECT_FALSE(file.isOpen());
    EXPECT_TRUE(isOpen(number));
    ::close(number);
}

TEST(Descriptor, ClosesTheFormerOneWhenItIsReset) {
    const int first = opened();
    const int second = opened();
    Descriptor file(first);
    file.reset(second);
    EXPECT_FALSE(isOpen(first));
    EXPECT_TRUE(isOpen(second));
    file.reset();
    EXPECT_FALSE(isOpen(second));
    EXPECT_FALSE(file.isOpen());
}

TEST(Descriptor, KeepsTheErrorNumberOfWhatFailedBefore) {
    errno = ENOSPC;
    Descriptor(opened()).reset();
    { const Descriptor notEvenOpen(1'000'000); }
    EXPECT_EQ(errno, ENOSPC);
}

TEST(Descriptor, TellsWhatClosingCameTo) {
    Descriptor file(opened());
    EXPECT_EQ(file.close(), 0);
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(file.close(), EBADF);
    Descriptor notEvenOpen(1'000'000);
    EXPECT_EQ(notEvenOpen.close(), EBADF);
    EXPECT_FALSE(notEvenOpen.isOpen());
}

}  // namespace
}  // namespace tavio::machine

// Photo libraries that answer late, twice, wrongly or not at all.
#include <chrono>
#include <cstdint>
#include <functional>
#include <future>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "TavioIpadSDK/imaging/state.h"
#include "TavioIpadSDK/intake/image_to_bmp.h"
#include "TavioIpadSDK/platform/background_queue.h"
#include "TavioIpadSDK/platform/photo_library.h"
#include "TavioIpadSDK/session/session.h"
#include "TavioIpadSDK/settings/job.h"
#include "TavioIpadSDK/settings/settings.h"
#include "intake/picture_files.h"
#include "intake/printed_picture.h"
#include "support/fresh_state.h"

namespace tavio::intake {
namespace {

using platform::AssetFailureHandler;
using platform::AssetRepresentation;
using platform::AssetResultHandler;
using test::transport;

// A photo library controlled by the test.
class ScriptedLibrary : public platform::PhotoLibrary {
  public:
    using Script = std::function<void(const URL&, AssetResultHandler, AssetFailureHandler)>;
    explicit ScriptedLibrary(Script script) : script_(std::move(script)) {}

    void assetForURL(const URL& url, AssetResultHandler onResult,
                     AssetFailureHandler onFailure) override {
        script_(url, std::move(onResult), std::move(onFailure));
    }

  private:
    Script script_;
};

// A stored file controlled by the test; by default it has no fault.
class ScriptedFile : public AssetRepresentation {
  public:
    explicit ScriptedFile(Bytes file) : file_(std::move(file)) {
        size_ = [this] { return file_.size(); };
        getBytes_ = [](std::span<Byte>, std::size_t copied) { return copied; };
    }

    std::uint64_t size() const override { return size_(); }
    std::size_t getBytes(std::span<Byte> into, std::uint64_t offset,
                         std::string* /*error*/) const override {
        asked_.push_back({offset, into.size()});
        const std::size_t count = std::min(into.size(), file_.size());
        std::copy_n(file_.begin(), count, into.begin());
        return getBytes_(into, count);
    }

    struct Request {
        std::uint64_t offset;
        std::size_t length;
        bool operator==(const Request&) const = default;
    };
    Bytes file_;
    std::function<std::uint64_t()> size_;
    std::function<std::size_t(std::span<Byte>, std::size_t copied)> getBytes_;
    mutable std::vector<Request> asked_;
};

const char* const kUrl = "assets-library://asset/1.bmp";

class PhotoFaults : public test::FreshState {
  protected:
    PhotoFaults() { Mode = "BT"; }

    static void answerWith(ScriptedLibrary::Script script) {
        platform::setPhotoLibrary(std::make_shared<ScriptedLibrary>(std::move(script)));
    }
    static void deliver(const std::shared_ptr<const AssetRepresentation>& asset) {
        answerWith([asset](const URL&, const AssetResultHandler& onResult,
                           const AssetFailureHandler&) { onResult(asset); });
    }

    // Asks for the photo; comes back when the background queue is done with it too.
    static bool ask() {
        const bool result = ImageToBmp(URL::fromText(kUrl));
        waitForQueue();
        return result;
    }
    static void waitForQueue() {
        std::promise<void> reached;
        platform::runInBackground([&reached] { reached.set_value(); });
        reached.get_future().wait();
    }

    void expectPrinted() {
        EXPECT_EQ(transport().operations(), std::vector<std::string>{"Write_BT_Data"});
        EXPECT_EQ(test::printedRows(), test::allBlack(40, 16));
        EXPECT_TRUE(notices.empty());
        transport() = {};
    }
    void expectRefused() {
        EXPECT_EQ(noticeMessages(), std::vector<std::string>{test::kNoPictureNotice});
        EXPECT_TRUE(transport().calls.empty());
        notices.clear();
    }
    void expectNothing() {
        EXPECT_TRUE(notices.empty());
        EXPECT_TRUE(transport().calls.empty());
    }

    std::shared_ptr<ScriptedFile> photo_ = std::make_shared<ScriptedFile>(test::blackBmp(40, 16));
};

// ---- Answers ------------------------------------------------------------------------------------

TEST_F(PhotoFaults, AFailedLookupPrintsAndSaysNothing) {
    answerWith([](const URL&, const AssetResultHandler&, const AssetFailureHandler& onFailure) {
        onFailure("access denied");
    });
    EXPECT_FALSE(ask());
    expectNothing();
    EXPECT_EQ(imaging::myImageData, nullptr);
    EXPECT_EQ(FileName, kUrl);
}

TEST_F(PhotoFaults, TheLibraryIsAskedForTheUrlToTheLetter) {
    std::vector<std::string> asked;
    answerWith(
        [&asked](const URL& url, const AssetResultHandler& onResult, const AssetFailureHandler&) {
            asked.push_back(url.absoluteText());
            onResult(nullptr);
        });
    const std::string text = "file:///photos/a%20b.JPG?id=7#top";
    EXPECT_FALSE(ImageToBmp(URL::fromText(text)));
    EXPECT_EQ(asked, std::vector<std::string>{text});
    EXPECT_EQ(FileName, text);
    expectRefused();
}

TEST_F(PhotoFaults, AnAnswerMayComeLaterFromAnotherThread) {
    std::thread delivering;
    std::thread::id printing;
    platform::setNoticeHandler(
        [&printing](const platform::Notice&) { printing = std::this_thread::get_id(); });
    answerWith([&](const URL&, AssetResultHandler onResult, const AssetFailureHandler&) {
        delivering = std::thread([onResult = std::move(onResult)] {
            waitForQueue();  // by then the lookup itself is over
            onResult(nullptr);
        });
    });
    EXPECT_FALSE(ImageToBmp(URL::fromText(kUrl)));
    EXPECT_EQ(printing, delivering.get_id());
    delivering.join();
}

TEST_F(PhotoFaults, APhotoOrAFailureMayComeLaterFromAnotherThread) {
    for (const bool succeeds : {true, false}) {
        std::thread delivering;
        answerWith([&](const URL&, const AssetResultHandler& onResult,
                       const AssetFailureHandler& onFailure) {
            delivering = std::thread([=, this] {
                waitForQueue();
                if (succeeds) {
                    onResult(photo_);
                } else {
                    onFailure("too late");
                }
            });
        });
        EXPECT_FALSE(ImageToBmp(URL::fromText(kUrl)));
        if (succeeds) {
            expectPrinted();
        } else {
            expectNothing();
        }
        delivering.join();
    }
}

TEST_F(PhotoFaults, OnlyTheFirstOfSeveralAnswersCounts) {
    const auto other = std::make_shared<ScriptedFile>(test::blackBmp(80, 24));
    answerWith(
        [&](const URL&, const AssetResultHandler& onResult, const AssetFailureHandler& onFailure) {
            onResult(photo_);
            onResult(other);
            onFailure("after all");
        });
    EXPECT_FALSE(ask());
    expectPrinted();
    EXPECT_TRUE(other->asked_.empty());

    answerWith(
        [&](const URL&, const AssetResultHandler& onResult, const AssetFailureHandler& onFailure) {
            onFailure("no");
            onResult(photo_);
        });
    EXPECT_FALSE(ask());
    expectNothing();
}

TEST_F(PhotoFaults, ALateSecondAnswerDoesNotDisturbTheNextPhoto) {
    AssetResultHandler late;
    answerWith([&](const URL&, AssetResultHandler onResult, const AssetFailureHandler&) {
        onResult(photo_);
        late = std::move(onResult);
    });
    ask();
    expectPrinted();
    deliver(photo_);
    late(std::make_shared<ScriptedFile>(test::blackBmp(80, 24)));
    expectNothing();
    ask();
    expectPrinted();
}

// ---- Exceptions ---------------------------------------------------------------------------------

TEST_F(PhotoFaults, ALibraryThatThrowsCountsAsAFailedLookup) {
    answerWith([](const URL&, const AssetResultHandler&, const AssetFailureHandler&) {
        throw std::runtime_error("broken");
    });
    EXPECT_FALSE(ask());
    expectNothing();
    answerWith([](const URL&, const AssetResultHandler&, const AssetFailureHandler&) { throw 7; });
    EXPECT_FALSE(ask());
    expectNothing();
}

TEST_F(PhotoFaults, ALibraryThatThrowsAfterItsAnswerHasAnswered) {
    answerWith([this](const URL&, const AssetResultHandler& onResult, const AssetFailureHandler&) {
        onResult(photo_);
        throw std::runtime_error("broken");
    });
    EXPECT_FALSE(ask());
    expectPrinted();
}

TEST_F(PhotoFaults, AFileThatThrowsIsNoPicture) {
    deliver(photo_);
    ImageScaled = true;
    photo_->size_ = []() -> std::uint64_t { throw std::runtime_error("broken"); };
    EXPECT_FALSE(ask());
    expectRefused();
    photo_->size_ = []() -> std::uint64_t { throw 7; };
    EXPECT_FALSE(ask());
    expectRefused();
}

TEST_F(PhotoFaults, AFileThatThrowsWhileItIsReadIsNoPicture) {
    deliver(photo_);
    photo_->getBytes_ = [](std::span<Byte>, std::size_t) -> std::size_t {
        throw std::runtime_error("broken");
    };
    EXPECT_FALSE(ask());
    expectRefused();
    photo_->getBytes_ = [](std::span<Byte>, std::size_t) -> std::size_t { throw 7; };
    EXPECT_FALSE(ask());
    expectRefused();
}

TEST_F(PhotoFaults, AFileThatThrowsOnAnotherThreadIsNoPicture) {
    photo_->getBytes_ = [](std::span<Byte>, std::size_t) -> std::size_t { throw 7; };
    std::thread delivering;
    answerWith([&](const URL&, AssetResultHandler onResult, const AssetFailureHandler&) {
        delivering = std::thread([this, onResult = std::move(onResult)] { onResult(photo_); });
    });
    EXPECT_FALSE(ask());
    expectRefused();
    delivering.join();
}

// ---- Sizes --------------------------------------------------------------------------------------

TEST_F(PhotoFaults, AFileInMemoryIsNeitherReadNorCopied) {
    class InMemoryFile : public ScriptedFile {
      public:
        using ScriptedFile::ScriptedFile;
        std::shared_ptr<const Bytes> fileInMemory() const override { return shared_; }
        std::shared_ptr<const Bytes> shared_ =
            std::make_shared<const Bytes>(test::blackBmp(40, 16));
    };
    const auto file = std::make_shared<InMemoryFile>(Bytes());
    deliver(file);
    EXPECT_FALSE(ask());
    expectPrinted();
    EXPECT_TRUE(file->asked_.empty());
    EXPECT_EQ(file->shared_.use_count(), 1) << "nothing of the job before is kept";
}

TEST_F(PhotoFaults, AFileIsReadOnceFromItsBeginningInItsWholeLength) {
    deliver(photo_);
    EXPECT_FALSE(ask());
    expectPrinted();
    EXPECT_EQ(photo_->asked_, (std::vector<ScriptedFile::Request>{{0, photo_->file_.size()}}));
}

TEST_F(PhotoFaults, AReadThatDeliversLessIsDecodedAsFarAsItGoes) {
    deliver(photo_);
    photo_->size_ = [this] { return photo_->file_.size() + 1000; };
    EXPECT_FALSE(ask());
    expectPrinted();  // all of the picture came
    for (const std::size_t delivered : {std::size_t{0}, std::size_t{1}, std::size_t{60}}) {
        photo_->getBytes_ = [delivered](std::span<Byte>, std::size_t) { return delivered; };
        EXPECT_FALSE(ask());
        expectRefused();
    }
}

TEST_F(PhotoFaults, AReadThatClaimsMoreThanWasAskedForIsTakenAtWhatFits) {
    deliver(photo_);
    for (const std::size_t claimed : {photo_->file_.size() + 1, ~std::size_t{0}}) {
        photo_->getBytes_ = [claimed](std::span<Byte>, std::size_t) { return claimed; };
        EXPECT_FALSE(ask());
        expectPrinted();
    }
}

TEST_F(PhotoFaults, AFileThatShrinksIsReadInItsNewLength) {
    deliver(photo_);
    int asked = 0;
    const std::size_t size = photo_->file_.size();
    photo_->size_ = [&asked, size] { return asked++ == 0 ? size + 50 : size; };
    EXPECT_FALSE(ask());
    expectPrinted();
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(photo_->asked_, (std::vector<ScriptedFile::Request>{{0, size}}));
}

TEST_F(PhotoFaults, AFileThatGrowsIsReadNoFurtherThanItsBlock) {
    deliver(photo_);
    int asked = 0;
    const std::size_t size = photo_->file_.size();
    photo_->size_ = [&asked, size] { return asked++ == 0 ? size : std::uint64_t{1} << 62; };
    EXPECT_FALSE(ask());
    expectPrinted();
    EXPECT_EQ(photo_->asked_, (std::vector<ScriptedFile::Request>{{0, size}}));
}

TEST_F(PhotoFaults, AFileOfNoBytesIsNoPictureAndDoesNotStopTheCaller) {
    deliver(std::make_shared<ScriptedFile>(Bytes()));
    EXPECT_FALSE(ask());
    expectRefused();
}

// The one road without a signal: an application must not go on as if the photo had been dealt with.
TEST_F(PhotoFaults, ACallerWhosePhotoFitsIntoNoMemoryWaitsForGood) {
    std::promise<void> sizeAsked;
    photo_->size_ = [&sizeAsked]() -> std::uint64_t {
        sizeAsked.set_value();
        return std::uint64_t{1} << 62;
    };
    deliver(photo_);
    auto returned = std::make_shared<std::promise<void>>();
    const std::future<void> back = returned->get_future();
    std::thread([returned] {
        ImageToBmp(URL::fromText(kUrl));
        returned->set_value();
    }).detach();

    sizeAsked.get_future().wait();
    waitForQueue();  // the handler has ended, so it has signalled
    EXPECT_EQ(back.wait_for(std::chrono::milliseconds(200)), std::future_status::timeout);
    EXPECT_TRUE(photo_->asked_.empty());
    expectNothing();

    deliver(std::make_shared<ScriptedFile>(test::blackBmp(40, 16)));
    EXPECT_FALSE(ask());  // others are served meanwhile
    expectPrinted();
    EXPECT_EQ(back.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
}

}  // namespace
}  // namespace tavio::intake

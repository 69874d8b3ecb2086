#include "TavioIpadSDK/platform/photo_library.h"

#include <memory>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

#include "TavioIpadSDK/platform/bytes.h"
#include "support/bitmaps.h"
#include "support/fresh_state.h"
#include "support/rights.h"
#include "support/temporary_folder.h"

namespace tavio::platform {
namespace {

using test::bytesOf;
using test::TemporaryFolder;
using test::writeFile;

// How a lookup ended.
struct Answer {
    int results = 0;
    int failures = 0;
    std::shared_ptr<const AssetRepresentation> asset;
};

Answer lookUp(PhotoLibrary& library, const Url& url) {
    Answer answer;
    library.assetForURL(
        url,
        [&answer](std::shared_ptr<const AssetRepresentation> asset) {
            ++answer.results;
            answer.asset = std::move(asset);
        },
        [&answer](const std::string& error) {
            ++answer.failures;
            EXPECT_NE(error, "");
        });
    EXPECT_EQ(answer.results + answer.failures, 1);
    return answer;
}

// The asset's whole file, none when the lookup gave no asset.
std::optional<Bytes> fileOf(PhotoLibrary& library, const Url& url) {
    const Answer answer = lookUp(library, url);
    if (!answer.asset) return std::nullopt;
    Bytes file(answer.asset->size());
    std::string error;
    EXPECT_EQ(answer.asset->getBytes(file, 0, &error), file.size());
    EXPECT_EQ(error, "");
    return file;
}

// ---- Registration -------------------------------------------------------------------------------

class Registration : public test::FreshState {};

TEST_F(Registration, HoldsTheLibraryUntilAnotherOrNoneTakesItsPlace) {
    EXPECT_EQ(photoLibrary(), nullptr);
    auto photos = std::make_shared<InMemoryPhotoLibrary>();
    setPhotoLibrary(photos);
    EXPECT_EQ(photoLibrary(), photos);
    const std::weak_ptr<InMemoryPhotoLibrary> watched = photos;
    photos.reset();
    EXPECT_FALSE(watched.expired());
    setPhotoLibrary(nullptr);
    EXPECT_EQ(photoLibrary(), nullptr);
    EXPECT_TRUE(watched.expired());
}

// ---- In memory ----------------------------------------------------------------------------------

TEST(InMemoryPhotos, AreFoundByTheUrlTheyGot) {
    InMemoryPhotoLibrary photos;
    const Url first = photos.add("a.png", bytesOf("first"));
    const Url second = photos.add("a.png", bytesOf("second"));
    EXPECT_NE(first.absoluteText(), second.absoluteText());
    EXPECT_EQ(fileOf(photos, first), bytesOf("first"));
    EXPECT_EQ(fileOf(photos, second), bytesOf("second"));
    EXPECT_EQ(fileOf(photos, Url::fromText(first.absoluteText())), bytesOf("first"));
}

TEST(InMemoryPhotos, KeepTheExtensionToTheLetter) {
    InMemoryPhotoLibrary photos;
    EXPECT_EQ(photos.add("a.JPEG", {}).pathExtension(), "JPEG");
    EXPECT_EQ(photos.add("a.b.Png", {}).pathExtension(), "Png");
    EXPECT_EQ(photos.add("a", {}).pathExtension(), "");
    EXPECT_EQ(photos.add("", {}).pathExtension(), "");
    EXPECT_EQ(photos.add(".bmp", {}).pathExtension(), "bmp");
}

TEST(InMemoryPhotos, GiveNoAssetForAUrlTheyDoNotHave) {
    InMemoryPhotoLibrary photos;
    photos.add("a.png", bytesOf("x"));
    for (const char* text : {"", "file:///a.png", "assets-library://asset/2.png"}) {
        const Answer answer = lookUp(photos, Url::fromText(text));
        EXPECT_EQ(answer.results, 1);
        EXPECT_EQ(answer.asset, nullptr);
    }
}

TEST(InMemoryPhotos, OutliveTheLibraryOnceFound) {
    auto photos = std::make_unique<InMemoryPhotoLibrary>();
    const Url url = photos->add("a.png", bytesOf("content"));
    const Answer answer = lookUp(*photos, url);
    photos.reset();
    EXPECT_EQ(answer.asset->size(), 7U);
}

TEST(InMemoryPhotos, AreAddedAndFoundFromSeveralThreads) {
    InMemoryPhotoLibrary photos;
    std::vector<std::thread> threads;
    std::vector<std::string> urls[2];
    for (auto& own : urls) {
        threads.emplace_back([&photos, &own] {
            for (int i = 0; i < 100; ++i) {
                const Url url = photos.add("a.png", bytesOf(std::to_string(i)));
                own.push_back(url.absoluteText());
                ASSERT_EQ(fileOf(photos, url), bytesOf(std::to_string(i)));
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    for (const auto& own : urls) {
        for (std::size_t i = 0; i < own.size(); ++i)
            EXPECT_EQ(fileOf(photos, Url::fromText(own[i])), bytesOf(std::to_string(i)));
    }
}

TEST(InMemoryPhotos, DeliverWhatThereIsFromTheOffsetOn) {
    InMemoryPhotoLibrary photos;
    const auto asset = lookUp(photos, photos.add("a.png", bytesOf("abcdef"))).asset;
    std::string error;
    Bytes into(4, '.');
    EXPECT_EQ(asset->getBytes(into, 1, &error), 4U);
    EXPECT_EQ(into, bytesOf("bcde"));
    into.assign(4, '.');
    EXPECT_EQ(asset->getBytes(into, 4, &error), 2U);
    EXPECT_EQ(into, bytesOf("ef.."));
    EXPECT_EQ(asset->getBytes(into, 6, &error), 0U);
    EXPECT_EQ(asset->getBytes({}, 0, &error), 0U);
    EXPECT_EQ(error, "");
}

TEST(InMemoryPhotos, AreHandedOutWithoutACopy) {
    InMemoryPhotoLibrary photos;
    const auto file = std::make_shared<const Bytes>(bytesOf("content"));
    const Url url = photos.share("a.b.png", file);
    EXPECT_EQ(url.pathExtension(), "png");
    EXPECT_EQ(lookUp(photos, url).asset->fileInMemory(), file);
    EXPECT_EQ(fileOf(photos, url), bytesOf("content"));
    const auto added = lookUp(photos, photos.add("a.png", bytesOf("added"))).asset;
    ASSERT_TRUE(added->fileInMemory());
    EXPECT_EQ(*added->fileInMemory(), bytesOf("added"));
}

TEST(InMemoryPhotos, SayWhyAnOffsetBehindTheEndDeliversNothing) {
    InMemoryPhotoLibrary photos;
    const auto asset = lookUp(photos, photos.add("a.png", bytesOf("abc"))).asset;
    Bytes into(4);
    for (const std::uint64_t offset : {std::uint64_t{4}, ~std::uint64_t{0}}) {
        std::string error;
        EXPECT_EQ(asset->getBytes(into, offset, &error), 0U);
        EXPECT_NE(error, "");
    }
}

// ---- A folder -----------------------------------------------------------------------------------

class FolderPhotos : public testing::Test {
  protected:
    FolderPhotos() : photos_(folder_ / "photos") {
        EXPECT_EQ(::mkdir((folder_ / "photos").c_str(), 0700), 0);
    }

    void add(const std::string& name, const std::string& content) {
        writeFile(folder_ / ("photos/" + name), content);
    }
    Answer lookUpText(std::string_view text) { return lookUp(photos_, Url::fromText(text)); }

    TemporaryFolder folder_;
    FolderPhotoLibrary photos_;
};

TEST_F(FolderPhotos, AreFoundByTheirName) {
    add("a.jpg", "content");
    EXPECT_EQ(FolderPhotoLibrary::urlOf("a.jpg").absoluteText(), "assets-library://folder/a.jpg");
    EXPECT_EQ(fileOf(photos_, FolderPhotoLibrary::urlOf("a.jpg")), bytesOf("content"));
}

TEST_F(FolderPhotos, MayHaveAnyNameThatAFileMayHave) {
    for (const char* name : {"my photo.jpg", "100%.png", "a%2Fb.png", "what?.bmp", "a#b.JPG",
                             "\xC3\xA9.png", "..a.png", "a:b", "a\nb", "\xFF.png", "..."}) {
        SCOPED_TRACE(name);
        add(name, name);
        EXPECT_EQ(fileOf(photos_, FolderPhotoLibrary::urlOf(name)), bytesOf(name));
    }
}

TEST_F(FolderPhotos, HaveThePathExtensionOfTheirName) {
    EXPECT_EQ(FolderPhotoLibrary::urlOf("my photo.JPEG").pathExtension(), "JPEG");
    EXPECT_EQ(FolderPhotoLibrary::urlOf("what?.bmp").pathExtension(), "bmp");
}

TEST_F(FolderPhotos, AreReadWhenTheyAreAskedFor) {
    add("a.jpg", "before");
    const Url url = FolderPhotoLibrary::urlOf("a.jpg");
    EXPECT_EQ(fileOf(photos_, url), bytesOf("before"));
    add("a.jpg", "after");
    EXPECT_EQ(fileOf(photos_, url), bytesOf("after"));
}

// Until then there is no copy of it in memory.
TEST_F(FolderPhotos, AreReadWhenTheirBytesAreAskedFor) {
    add("a.jpg", "before");
    const auto asset = lookUp(photos_, FolderPhotoLibrary::urlOf("a.jpg")).asset;
    ASSERT_TRUE(asset);
    EXPECT_EQ(asset->fileInMemory(), nullptr);
    add("a.jpg", "after, and longer");
    Bytes into(asset->size());
    std::string error;
    EXPECT_EQ(asset->getBytes(into, 0, &error), 17U);
    EXPECT_EQ(into, bytesOf("after, and longer"));
    EXPECT_EQ(error, "");
}

TEST_F(FolderPhotos, LargerThanAnyPictureFailToBeFoundAndTakeNoMemory) {
    add("a.bmp", "x");
    ASSERT_EQ(::truncate((folder_ / "photos/a.bmp").c_str(), (off_t{1} << 31) + 1), 0);
    const Answer answer = lookUp(photos_, FolderPhotoLibrary::urlOf("a.bmp"));
    EXPECT_EQ(answer.failures, 1);
    EXPECT_EQ(answer.results, 0);
}

TEST_F(FolderPhotos, StayTheFileThatWasFound) {
    add("a.jpg", "found");
    const auto asset = lookUp(photos_, FolderPhotoLibrary::urlOf("a.jpg")).asset;
    ASSERT_TRUE(asset);
    ASSERT_EQ(::unlink((folder_ / "photos/a.jpg").c_str()), 0);
    add("a.jpg", "another");
    Bytes into(asset->size());
    std::string error;
    EXPECT_EQ(asset->getBytes(into, 0, &error), 5U);
    EXPECT_EQ(into, bytesOf("found"));
}

TEST_F(FolderPhotos, DeliverWhatThereIsFromTheOffsetOn) {
    add("a.jpg", "abcdef");
    const auto asset = lookUp(photos_, FolderPhotoLibrary::urlOf("a.jpg")).asset;
    std::string error;
    Bytes into(4, '.');
    EXPECT_EQ(asset->getBytes(into, 1, &error), 4U);
    EXPECT_EQ(into, bytesOf("bcde"));
    into.assign(4, '.');
    EXPECT_EQ(asset->getBytes(into, 4, &error), 2U);
    EXPECT_EQ(into, bytesOf("ef.."));
    EXPECT_EQ(asset->getBytes(into, 6, &error), 0U);
    EXPECT_EQ(error, "");
    for (const std::uint64_t offset : {std::uint64_t{7}, ~std::uint64_t{0}}) {
        error.clear();
        EXPECT_EQ(asset->getBytes(into, offset, &error), 0U);
        EXPECT_NE(error, "");
    }
}

TEST_F(FolderPhotos, MayBeEmptyFiles) {
    add("a.jpg", "");
    EXPECT_EQ(fileOf(photos_, FolderPhotoLibrary::urlOf("a.jpg")), Bytes());
}

TEST_F(FolderPhotos, LieInTheFolderOnlyAndNeverBesideIt) {
    writeFile(folder_ / "outside.jpg", "secret");
    add("inside.jpg", "x");
    const std::string path = (folder_ / "outside.jpg").substr(1);
    for (const std::string& name :
         {std::string("../outside.jpg"), std::string("..%2Foutside.jpg"),
          std::string("%2E%2E/outside.jpg"), std::string("%2e%2e%2foutside.jpg"), std::string(".."),
          std::string("%2E%2E"), std::string("."), std::string(""), "/" + path, "%2F" + path,
          std::string("./inside.jpg"), std::string("inside.jpg/"), std::string("//inside.jpg")}) {
        SCOPED_TRACE(name);
        const Answer answer = lookUpText("assets-library://folder/" + name);
        EXPECT_EQ(answer.results, 1);
        EXPECT_EQ(answer.asset, nullptr);
    }
    for (const char* name : {"../outside.jpg", "..", "photos/../outside.jpg", "/outside.jpg"})
        EXPECT_EQ(lookUp(photos_, FolderPhotoLibrary::urlOf(name)).asset, nullptr) << name;
}

TEST_F(FolderPhotos, AreNotFoundByAnyOtherKindOfUrl) {
    add("a.jpg", "x");
    for (const std::string& text :
         {Url::fromPath(folder_ / "photos/a.jpg").absoluteText(), std::string("a.jpg"),
          std::string("assets-library://asset/a.jpg"), std::string("assets-library://folder"),
          std::string("Assets-Library://folder/a.jpg"), std::string()}) {
        const Answer answer = lookUpText(text);
        EXPECT_EQ(answer.results, 1) << text;
        EXPECT_EQ(answer.asset, nullptr) << text;
    }
}

TEST_F(FolderPhotos, AreFoundWithAQueryOrFragmentBehindTheirName) {
    add("a.jpg", "x");
    EXPECT_NE(lookUpText("assets-library://folder/a.jpg?id=7#top").asset, nullptr);
}

TEST_F(FolderPhotos, GiveNoAssetForAMissingFileOrFolder) {
    EXPECT_EQ(lookUp(photos_, FolderPhotoLibrary::urlOf("missing.jpg")).results, 1);
    FolderPhotoLibrary nowhere(folder_ / "nowhere");
    EXPECT_EQ(lookUp(nowhere, FolderPhotoLibrary::urlOf("a.jpg")).results, 1);
    EXPECT_EQ(lookUpText("assets-library://folder/a%00.jpg").results, 1);
}

TEST_F(FolderPhotos, EndInTheFailureHandlerWhenTheyCannotBeRead) {
    ASSERT_EQ(::mkdir((folder_ / "photos/folder.jpg").c_str(), 0700), 0);
    ASSERT_EQ(::mkfifo((folder_ / "photos/pipe.jpg").c_str(), 0600), 0);
    EXPECT_EQ(lookUp(photos_, FolderPhotoLibrary::urlOf("folder.jpg")).failures, 1);
    EXPECT_EQ(lookUp(photos_, FolderPhotoLibrary::urlOf("pipe.jpg")).failures, 1);
}

TEST_F(FolderPhotos, EndInTheFailureHandlerWithoutTheRightToReadThem) {
    add("a.jpg", "content");
    const std::string path = folder_ / "photos/a.jpg";
    ASSERT_EQ(::chmod(path.c_str(), 0), 0);
    ASSERT_EQ(::chmod(folder_.path().c_str(), 0755), 0);
    ASSERT_EQ(::chmod((folder_ / "photos").c_str(), 0755), 0);
    const test::WithoutRootRights rights;
    ASSERT_TRUE(rights.succeeded());
    EXPECT_EQ(lookUp(photos_, FolderPhotoLibrary::urlOf("a.jpg")).failures, 1);
}

// A regular file that opens and cannot be read, at its beginning at least.
TEST(FolderPhoto, EndsInTheFailureHandlerWhenItOpensAndCannotBeRead) {
    if (!fileExists("/proc/self/mem")) GTEST_SKIP() << "no /proc";
    FolderPhotoLibrary photos("/proc/self");
    EXPECT_EQ(lookUp(photos, FolderPhotoLibrary::urlOf("mem")).failures, 1);
}

}  // namespace
}  // namespace tavio::platform

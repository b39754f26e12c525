#include "ChildTest.h"
#include "DailyNoteFixture.h"
#include "FileDescriptor.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <functional>
#include <vector>

namespace {

class DailyNoteFailureTest : public DailyNoteFixture
{
protected:
    static void limitFileSizes(std::size_t size)
    {
        const rlimit limit = {size, size};
        ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    }

    /// Runs `work` in a process for which permissions count: root's has none that do.
    void asOrdinaryUser(const std::function<void()>& work) const
    {
        constexpr uid_t nobody = 65534;
        const bool isRoot = ::geteuid() == 0;
        if (isRoot) {
            ASSERT_EQ(::chown(documents.c_str(), nobody, nobody), 0);
            for (const auto& entry : std::filesystem::recursive_directory_iterator(documents))
                ASSERT_EQ(::lchown(entry.path().c_str(), nobody, nobody), 0);
        }
        const pid_t child = start([&] {
            if (isRoot && (::setresgid(nobody, nobody, nobody) != 0 ||
                           ::setresuid(nobody, nobody, nobody) != 0))
                throw std::runtime_error("root cannot become another user.");
            work();
        });
        EXPECT_EQ(finish(child), 0);
    }
};

TEST_F(DailyNoteFailureTest, DocumentsThatAreAFileAreNamedByTheirCause)
{
    write(documents / "file", "content");
    EXPECT_EQ(failure(documents / "file"), sentence(ENOTDIR));
    EXPECT_EQ(failure(documents / "file" / "below"), sentence(ENOTDIR));
    EXPECT_EQ(content(documents / "file"), "content");
}

TEST_F(DailyNoteFailureTest, AFileInPlaceOfTheFolderStays)
{
    write(folder, "content");
    EXPECT_EQ(failure(), sentence(ENOTDIR));
    EXPECT_EQ(content(folder), "content");
}

TEST_F(DailyNoteFailureTest, NamesThatAreTooLongAreNamedByTheirCause)
{
    EXPECT_EQ(failure(documents / std::string(300, 'x')), sentence(ENAMETOOLONG));
}

TEST_F(DailyNoteFailureTest, WhatIsNoFileIsNeitherWrittenToNorReplaced)
{
    std::filesystem::create_directories(note);
    EXPECT_EQ(failure(), "2026-11-21.md is not a file.");
    EXPECT_TRUE(std::filesystem::is_directory(note));
    std::filesystem::remove(note);
    std::filesystem::create_symlink("/dev/null", note);
    EXPECT_EQ(failure(), "2026-11-21.md is not a file.");
    EXPECT_TRUE(std::filesystem::is_character_file(note));
}

TEST_F(DailyNoteFailureTest, APipeHoldsNothingUp)
{
    std::filesystem::create_directory(folder);
    ASSERT_EQ(::mkfifo(note.c_str(), 0666), 0);
    EXPECT_EQ(failure(), "2026-11-21.md is not a file.");
    const FileDescriptor reader(::open(note.c_str(), O_RDONLY | O_NONBLOCK));
    EXPECT_EQ(failure(), "2026-11-21.md is not a file.");
    EXPECT_TRUE(std::filesystem::is_fifo(note));
}

TEST_F(DailyNoteFailureTest, LinksInACircleAreNamedByTheirCause)
{
    std::filesystem::create_directory(folder);
    std::filesystem::create_symlink(note.filename(), note);
    EXPECT_EQ(failure(), sentence(ELOOP));
    EXPECT_EQ(names(folder), std::set<std::string>{"2026-11-21.md"});
}

TEST_F(DailyNoteFailureTest, RunningOutOfDescriptorsReplacesNoNote)
{
#if defined(__has_feature)
#if __has_feature(undefined_behavior_sanitizer)
    GTEST_SKIP() << "This sanitizer needs descriptors of its own.";
#endif
#endif
    makeNote();
    rlimit before = {};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
    std::string text;
    // The lock of the folder takes the last one but `left`.
    for (const rlim_t left : {0U, 1U}) {
        const FileDescriptor highest(::open("/dev/null", O_RDONLY));
        rlimit lowered = before;
        lowered.rlim_cur = static_cast<rlim_t>(highest.value()) + 1 + left;
        ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &lowered), 0);
        text = failure();
        ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &before), 0);
        EXPECT_EQ(text, sentence(EMFILE)) << left;
        EXPECT_EQ(content(note), earlier);
    }
}

TEST_F(DailyNoteFailureTest, ALimitOnFileSizesTakesTheEntryBack)
{
    makeNote();
    const pid_t child = start([this] {
        limitFileSizes(earlier.size() + 20);
        EXPECT_EQ(failure(), sentence(EFBIG));
        EXPECT_EQ(content(note), earlier);
        EXPECT_EQ(failure(), sentence(EFBIG)); // and the signal has not stayed
    });
    EXPECT_EQ(finish(child), 0);
    EXPECT_EQ(content(note), earlier);
}

TEST_F(DailyNoteFailureTest, ANoteThatIsBeyondTheLimitAlreadyStaysAsItIs)
{
    makeNote();
    const pid_t child = start([this] {
        limitFileSizes(earlier.size() - 1);
        EXPECT_EQ(failure(), sentence(EFBIG));
    });
    EXPECT_EQ(finish(child), 0);
    EXPECT_EQ(content(note), earlier);
}

TEST_F(DailyNoteFailureTest, ALimitOnFileSizesLeavesNothingOfANewNote)
{
    const pid_t child = start([this] {
        limitFileSizes(20);
        EXPECT_EQ(failure(), sentence(EFBIG));
    });
    EXPECT_EQ(finish(child), 0);
    EXPECT_EQ(names(folder), std::set<std::string>());
}

TEST_F(DailyNoteFailureTest, AFullDiskTakesTheEntryBack)
{
    if (ChildTest::isChild()) {
        const QString large(3'000'000, 'x');
        append(QString(8'000'000, 'x'));
        const std::string before = content(note);
        EXPECT_EQ(failure(documents, large), sentence(ENOSPC));
        EXPECT_TRUE(content(note) == before);
        EXPECT_EQ(failure(documents / "others", large), sentence(ENOSPC));
        EXPECT_EQ(names(documents / "others" / "Pithwise Notes"), std::set<std::string>());
        append("short");
        EXPECT_TRUE(content(note) == before + entry("short"));
        return;
    }
    const std::vector<std::string> space =
        ChildTest::mounted("mount -t tmpfs -o size=10m tmpfs \"$0\"", temporary.path());
    if (space.empty())
        GTEST_SKIP() << "Name spaces for users are not to be had here.";
    EXPECT_EQ(ChildTest::repeat(temporary.path(), space), 0);
}

// As where the file system has no files without a name.
TEST_F(DailyNoteFailureTest, WhereAFileCannotBeGivenANameLaterANewNoteIsWholeToo)
{
    if (ChildTest::isChild()) {
        ASSERT_FALSE(std::filesystem::exists("/proc/self/fd/0"));
        append("text");
        append("text");
        EXPECT_EQ(content(note), header + entry("text") + entry("text"));
        EXPECT_EQ(names(folder), std::set<std::string>{"2026-11-21.md"});
        EXPECT_EQ(mode(note), 0600u);
        return;
    }
    const std::vector<std::string> space =
        ChildTest::mounted("mount -t tmpfs tmpfs /proc/$$/fd", temporary.path());
    if (space.empty())
        GTEST_SKIP() << "Name spaces for users are not to be had here.";
    EXPECT_EQ(ChildTest::repeat(temporary.path(), space), 0);
}

TEST_F(DailyNoteFailureTest, ANoteThatMayNotBeWrittenToIsReplaced)
{
    makeNote();
    write(folder / "2026-11-21.md.abandoned.part", "half of it");
    asOrdinaryUser([this] {
        ASSERT_EQ(::chmod(note.c_str(), 0444), 0);
        append("new");
        append("next");
    });
    EXPECT_EQ(content(note), header + entry("new") + entry("next"));
    EXPECT_EQ(mode(note), 0600u);
    EXPECT_EQ(names(folder), std::set<std::string>{"2026-11-21.md"});
}

TEST_F(DailyNoteFailureTest, ANoteBehindALinkIsReplacedWhereItLies)
{
    std::filesystem::create_directory(folder);
    write(documents / "elsewhere.md", "earlier");
    std::filesystem::create_symlink("../elsewhere.md", note);
    asOrdinaryUser([this] {
        ASSERT_EQ(::chmod((documents / "elsewhere.md").c_str(), 0444), 0);
        append("new");
    });
    EXPECT_EQ(content(documents / "elsewhere.md"), header + entry("new"));
    EXPECT_TRUE(std::filesystem::is_symlink(note));
}

TEST_F(DailyNoteFailureTest, AFolderThatMayNotBeWrittenToKeepsWhatItHas)
{
    makeNote();
    asOrdinaryUser([this] {
        ASSERT_EQ(::chmod(folder.c_str(), 0555), 0);
        append("more"); // the note itself may be
        ASSERT_EQ(::chmod(note.c_str(), 0444), 0);
        EXPECT_EQ(failure(), sentence(EACCES));
        const EnvironmentVariable thai("LC_ALL", "th_TH");
        EXPECT_EQ(failure(), sentence(EACCES));
        ASSERT_EQ(::chmod(documents.c_str(), 0555), 0);
        EXPECT_EQ(failure(documents / "below"), sentence(EACCES));
        ASSERT_EQ(::chmod(documents.c_str(), 0755), 0);
        ASSERT_EQ(::chmod(folder.c_str(), 0755), 0);
    });
    EXPECT_EQ(content(note), earlier + entry("more"));
}

TEST_F(DailyNoteFailureTest, AFolderThatCannotBeLockedIsUsedAllTheSame)
{
    makeNote();
    asOrdinaryUser([this] {
        ASSERT_EQ(::chmod(folder.c_str(), 0300), 0);
        append("more");
        ASSERT_EQ(::chmod(folder.c_str(), 0755), 0);
    });
    EXPECT_EQ(content(note), earlier + entry("more"));
}

TEST_F(DailyNoteFailureTest, AProcessThatHasStoppedInTheMiddleHoldsNothingUpForLong)
{
    makeNote();
    const FileDescriptor stopped(::open(folder.c_str(), O_RDONLY | O_DIRECTORY));
    ASSERT_EQ(::flock(stopped.value(), LOCK_EX), 0);
    EXPECT_EQ(failure(), "Another program is writing to it.");
    EXPECT_EQ(content(note), earlier);
}

} // namespace

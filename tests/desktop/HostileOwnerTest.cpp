#include "SelectionFixture.h"
#include "SelectionOwner.h"

namespace {

using Answer = SelectionOwner::Answer;

constexpr std::chrono::seconds limit(5);

/// An owner of the clipboard that answers as a test says, with `targets` for what it has. What it
/// does not answer ends only by a limit of time: that something comes at all is what is tried.
class HostileOwnerTest : public SelectionFixture
{
protected:
    template <typename Reply>
    void own(const std::vector<std::string>& targets, Reply reply)
    {
        m_owner = std::make_unique<SelectionOwner>([=, this](const std::string& target) -> Answer {
            if (target == "TARGETS")
                return {"ATOM", 32, m_owner->atoms(targets)};
            return reply(target);
        });
    }

    std::vector<Pasteboard::Item> items() { return m_ports.pasteboard->snapshot(limit).items; }
    bool isComplete() { return m_ports.pasteboard->snapshot(limit).isComplete; }

    std::unique_ptr<SelectionOwner> m_owner;
};

TEST_F(HostileOwnerTest, OneThatNeverAnswersLeavesAnEmptyItem)
{
    m_owner = std::make_unique<SelectionOwner>([](const std::string&) {
        return Answer{"", 8, "", true};
    });
    EXPECT_EQ(items(), std::vector<Pasteboard::Item>(1));
    EXPECT_EQ(m_ports.pasteboard->plainText(std::chrono::milliseconds(100)), std::nullopt);
}

TEST_F(HostileOwnerTest, ATargetThatIsNotAnsweredIsLeftOut)
{
    own({"one", "silent", "two"}, [](const std::string& target) {
        return Answer{target, 8, target, target == "silent"};
    });
    EXPECT_EQ(items(),
              (std::vector<Pasteboard::Item>{{{"one", "one", "one 8"}, {"two", "two", "two 8"}}}));
}

TEST_F(HostileOwnerTest, APromiseOfPiecesThatNeverComeIsLeftOut)
{
    own({"pieces", "text/html"}, [](const std::string& target) {
        return target == "pieces" ? Answer{"INCR", 32, std::string(4, '\xFF')}
                                  : Answer{target, 8, "html"};
    });
    EXPECT_EQ(items(), (std::vector<Pasteboard::Item>{{{"text/html", "html", "text/html 8"}}}));
}

TEST_F(HostileOwnerTest, AListOfTargetsThatIsNoneIsAnEmptyItem)
{
    for (const Answer& list :
         {Answer{"ATOM", 8, "not atoms"}, Answer{"ATOM", 32, ""}, Answer{"STRING", 16, "xy"},
          Answer{"ATOM", 32, std::string(4000, '\xFF')},
          Answer{"ATOM", 32, std::string(400'000, '\0')}, Answer{"INCR", 8, ""}}) {
        m_owner = std::make_unique<SelectionOwner>([&](const std::string&) { return list; });
        EXPECT_EQ(items(), std::vector<Pasteboard::Item>(1));
    }
}

TEST_F(HostileOwnerTest, ManySlowTargetsEndWithTheLimit)
{
    using namespace std::chrono_literals;
    constexpr auto slowness = 20ms; // the owner's, of which a busy machine can only make more
    constexpr auto shortLimit = 3s;
    std::vector<std::string> targets;
    for (int i = 0; i < 250; ++i)
        targets.push_back("target" + std::to_string(i));
    own(targets, [=](const std::string& target) {
        std::this_thread::sleep_for(slowness);
        return Answer{target, 8, target};
    });
    const auto [saved, isComplete] = m_ports.pasteboard->snapshot(shortLimit);
    EXPECT_FALSE(isComplete);
    ASSERT_EQ(saved.size(), 1U);
    EXPECT_GT(saved[0].size(), 0U);
    EXPECT_LE(saved[0].size(), std::size_t{shortLimit / slowness});
}

TEST_F(HostileOwnerTest, ASnapshotIsCompleteWhereWhatIsMissingWasRefused)
{
    own({"one", "refused"}, [](const std::string& target) {
        return Answer{target == "refused" ? "" : target, 8, target};
    });
    EXPECT_TRUE(isComplete());
    own({}, [](const std::string& target) { return Answer{target, 8, target}; });
    EXPECT_TRUE(isComplete());
    m_owner.reset();
    EXPECT_TRUE(isComplete());
}

TEST_F(HostileOwnerTest, ASnapshotIsNotCompleteWhereSomethingIsMissing)
{
    own({"one", "silent"}, [](const std::string& target) {
        return Answer{target, 8, target, target == "silent"};
    });
    EXPECT_FALSE(isComplete()) << "no answer";
    own({"one", "pieces"}, [](const std::string& target) {
        return target == "pieces" ? Answer{"INCR", 32, "long"} : Answer{target, 8, target};
    });
    EXPECT_FALSE(isComplete()) << "no pieces";
    own(std::vector<std::string>(300, "one"), [](const std::string& target) {
        return Answer{target, 8, target};
    });
    EXPECT_FALSE(isComplete()) << "more targets than anybody asks for";
    m_owner = std::make_unique<SelectionOwner>([](const std::string&) { return Answer{}; });
    EXPECT_FALSE(isComplete()) << "nobody knows of which";
    own({"one"}, [](const std::string& target) { return Answer{target, 8, target}; });
    EXPECT_FALSE(m_ports.pasteboard->snapshot(std::chrono::milliseconds(-1)).isComplete);
}

TEST_F(HostileOwnerTest, PlainTextIsSavedFirstAndTheSameTextAgainLast)
{
    own({"TEXT", "text/html", "UTF8_STRING", "image/png"}, [](const std::string& target) {
        return Answer{target, 8, target};
    });
    EXPECT_TRUE(isComplete());
    EXPECT_THAT(m_owner->asked(),
                testing::ElementsAre("TARGETS", "UTF8_STRING", "text/html", "image/png", "TEXT"));
}

TEST_F(HostileOwnerTest, WhatHasNoEndIsGivenUp)
{
    constexpr std::size_t most = 64 << 20;
    constexpr std::chrono::minutes patience(1);
    own({"UTF8_STRING"}, [](const std::string&) { return Answer{"", 8, "", false, false, true}; });
    EXPECT_FALSE(m_ports.pasteboard->snapshot(patience).isComplete);
    EXPECT_LE(m_owner->endlessBytes(), most + 1'000'000);
    EXPECT_EQ(m_ports.pasteboard->plainText(patience), std::nullopt);
    EXPECT_LE(m_owner->endlessBytes(), 2 * (most + 1'000'000));
}

TEST_F(HostileOwnerTest, TextOfAnUnexpectedKindIsNone)
{
    own({}, [](const std::string&) { return Answer{"INTEGER", 32, "1234"}; });
    EXPECT_EQ(m_ports.pasteboard->plainText(limit), std::nullopt);
}

TEST_F(HostileOwnerTest, TextInLatin1IsRead)
{
    own({}, [](const std::string& target) {
        return Answer{target == "STRING" ? "STRING" : "", 8, "caf\xE9"};
    });
    EXPECT_EQ(m_ports.pasteboard->plainText(limit), "café");
}

TEST_F(HostileOwnerTest, ALateAnswerIsNotTakenForTheNextOne)
{
    std::atomic<bool> isLate = true;
    own({"first", "second"}, [&](const std::string& target) {
        if (target == "first" && isLate.exchange(false))
            return Answer{"first", 8, "late", false, true};
        return Answer{target, 8, "in time"};
    });
    const Pasteboard::Representation first = {"first", "in time", "first 8"};
    const Pasteboard::Representation second = {"second", "in time", "second 8"};
    EXPECT_EQ(items(), (std::vector<Pasteboard::Item>{{second}}));
    EXPECT_EQ(items(), (std::vector<Pasteboard::Item>{{first, second}}));
}

TEST_F(HostileOwnerTest, ALateAnswerIsNotTakenForOneToTheSameQuestion)
{
    std::atomic<bool> isLate = true;
    own({}, [&](const std::string& target) {
        if (target != "UTF8_STRING")
            return Answer{}; // so that nothing but the one question is answered
        if (isLate.exchange(false))
            return Answer{target, 8, "late", false, true};
        return Answer{target, 8, "in time"};
    });
    constexpr std::chrono::milliseconds patience(100);
    EXPECT_EQ(m_ports.pasteboard->plainText(patience), std::nullopt);
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(m_ports.pasteboard->plainText(limit), "in time");
}

TEST_F(HostileOwnerTest, OneThatDiesInTheMiddleIsNotReplaced)
{
    const auto answer = [this](const std::string& target) {
        if (target == "first")
            return Answer{"first", 8, "data"};
        QMetaObject::invokeMethod(
            qApp, [this] { m_owner.reset(); }, Qt::QueuedConnection);
        return Answer{"INCR", 32, "long"};
    };
    QProcess& application = startApp({"--copies", "copied"});
    own({"first", "second"}, answer);
    EXPECT_EQ(grab(), std::nullopt);
    EXPECT_EQ(m_owner, nullptr);
    EXPECT_EQ(application.readAllStandardOutput(), ""); // it was not asked to copy
}

} // namespace

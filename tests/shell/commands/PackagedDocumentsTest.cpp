#include "ProgramFixture.h"

#include <QFile>
#include <QRegularExpression>

namespace {

class PackagedDocumentsTest : public ProgramTest
{
protected:
    static QString packaged(const QString& name)
    {
        QFile file(QStringLiteral(PITHWISE_PACKAGING "/") + name);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
        return QString::fromUtf8(file.readAll());
    }

    /// The options and commands that the program's own help tells of, without their hyphens.
    QStringList words()
    {
        static const QRegularExpression option("--([a-z]+)");
        static const QRegularExpression command("^  ([a-z]+)  +[A-Z]",
                                                QRegularExpression::MultilineOption);
        QStringList found;
        for (const QStringList& called : {QStringList{},
                                          {"summarize"},
                                          {"read"},
                                          {"plan"},
                                          {"hotkey"},
                                          {"toggle"},
                                          {"model"}}) {
            const QString help = QString::fromStdString(run(called + QStringList("--help")).output);
            for (const QRegularExpression& pattern : {option, command}) {
                for (const QRegularExpressionMatch& match : pattern.globalMatch(help))
                    found.append(match.captured(1));
            }
        }
        found.removeDuplicates();
        return found;
    }
};

TEST_F(PackagedDocumentsTest, TheManualAndTheCompletionsKnowEverythingThatTheHelpTells)
{
    const QStringList all = words();
    EXPECT_TRUE(all.contains("capture") && all.contains("summarize") && all.contains("status"));
    for (const char* document : {"pithwise.1", "completions/pithwise.bash", "completions/_pithwise",
                                 "completions/pithwise.fish"}) {
        const QString text = packaged(document);
        for (const QString& word : all)
            EXPECT_TRUE(text.contains(word)) << document << ": " << word.toStdString();
    }
}

TEST_F(PackagedDocumentsTest, TheManualIsOfThisVersion)
{
    EXPECT_TRUE(packaged("pithwise.1").contains("Pithwise " PITHWISE_VERSION));
    EXPECT_TRUE(packaged("local.pithwise.Pithwise.metainfo.xml")
                    .contains("<release version=\"" PITHWISE_VERSION "\""));
    EXPECT_TRUE(packaged("changelog").contains("pithwise (" PITHWISE_VERSION ")"));
}

} // namespace

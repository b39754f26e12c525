#include "FuzzInput.h"
#include "InlineMarkdown.h"

/// What `markdown` shows. Every run of it shows something and looks different from the one before;
/// nothing is longer than it was, but for the beginning of mail addresses.
static QString shown(const QString& markdown)
{
    QString text;
    InlineMarkdown::Run last;
    for (InlineMarkdown::Run& run : InlineMarkdown::parse(markdown)) {
        FuzzInput::require(!run.text.isEmpty());
        FuzzInput::require(run.link.size() <= markdown.size() + 7);
        last.text = run.text;
        FuzzInput::require(run != last || text.isEmpty());
        text += run.text;
        last = std::move(run);
    }
    FuzzInput::require(text.size() <= markdown.size());
    return text;
}

static QString without(QStringView characters, QString text)
{
    return text.removeIf([characters](QChar character) { return characters.contains(character); });
}

/// Whether `whole` has the characters of `part` in their order.
static bool hasInOrder(const QString& whole, QStringView part)
{
    for (const QChar character : whole) {
        if (part.startsWith(character))
            part = part.sliced(1);
    }
    return part.isEmpty();
}

/// Nothing is made up but what references and nul characters stand for. Where nothing makes links
/// or code, whose addresses and padding are not shown, all stays but the marks, white space too.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QString markdown = QString::fromStdString(FuzzInput::text(data, size));
    shown(markdown);
    const QString literal = without(QStringView(u"&\0", 2), markdown);
    FuzzInput::require(hasInOrder(literal, shown(literal)));
    const QString open = without(u"]`", literal);
    constexpr QStringView marks = u"\\*_<>";
    FuzzInput::require(without(marks, shown(open)) == without(marks, open));
    return 0;
}

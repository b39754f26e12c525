#include "FuzzInput.h"
#include "InlineMarkdown.h"

/// Every run shows something and looks different from the one before; nothing is made up but what
/// references stand for and the beginning of mail addresses.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QString markdown = QString::fromStdString(FuzzInput::text(data, size));
    qsizetype shown = 0;
    InlineMarkdown::Run last;
    for (InlineMarkdown::Run& run : InlineMarkdown::parse(markdown)) {
        shown += run.text.size();
        FuzzInput::require(!run.text.isEmpty());
        FuzzInput::require(run.link.size() <= markdown.size() + 7);
        last.text = run.text;
        FuzzInput::require(run != last || shown == run.text.size());
        last = std::move(run);
    }
    FuzzInput::require(shown <= markdown.size());
    return 0;
}

#include "ReadCommand.h"

#include "SourceText.h"
#include "TextOutput.h"

namespace ReadCommand {

int run(const SummaryRequest& request)
{
    const std::string text = SourceText::read(request);
    TextOutput::write(*stdout, text);
    if (!text.ends_with('\n'))
        TextOutput::write(*stdout, "\n");
    TextOutput::flush(*stdout);
    return 0;
}

} // namespace ReadCommand

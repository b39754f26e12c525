#include "ReadCommand.h"

#include "SourceText.h"
#include "TextOutput.h"

namespace ReadCommand {

int run(const std::string& source)
{
    const std::string text = SourceText::read(source);
    TextOutput::write(*stdout, text);
    if (!text.ends_with('\n'))
        TextOutput::write(*stdout, "\n");
    TextOutput::flush(*stdout);
    return 0;
}

} // namespace ReadCommand

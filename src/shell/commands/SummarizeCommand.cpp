#include "SummarizeCommand.h"

#include "AnswerPrinter.h"
#include "ClipboardOffer.h"
#include "Interrupt.h"
#include "ModelCommand.h"
#include "ModelFile.h"
#include "Pithwise.h"
#include "SourceText.h"
#include "StatusLine.h"
#include "WhiteSpace.h"

namespace SummarizeCommand {

int run(const SummaryRequest& request)
{
    ModelCommand::requireFile(request.model);
    const std::string text = SourceText::read(request);
    std::error_code ignored;
    if (request.model.empty() && !std::filesystem::is_regular_file(ModelFile::path(), ignored)) {
        if (const int status = ModelCommand::download(); status != 0)
            return status;
    }

    CancelToken token;
    const Interrupt interrupt([&token] { token.cancel(); });
    StatusLine statusLine(*stderr);
    AnswerPrinter printer(*stdout);
    statusLine.show("Loading model…");
    const auto onStatus = [&](const std::string& status) { statusLine.show(status); };
    const auto onOutput = [&](const std::string& answer) {
        statusLine.clear();
        printer.update(answer);
    };
    const std::string summary = Pithwise::run(text, request.mode, request.length, token, onStatus,
                                              onOutput, Pithwise::sharedEngine(request.model));
    statusLine.clear();
    printer.finish(summary);
    const std::string_view visible = WhiteSpace::trimmed(summary);
    if (request.isCopied && !visible.empty()) // else what is there may be better
        ClipboardOffer::put(std::string(visible));
    return interrupt.exitStatus();
}

} // namespace SummarizeCommand

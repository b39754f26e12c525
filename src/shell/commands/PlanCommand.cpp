#include "PlanCommand.h"

#include "AnswerPrinter.h"
#include "Characters.h"
#include "Pithwise.h"
#include "SourceText.h"
#include "WhiteSpace.h"

#include <nlohmann/json.hpp>

namespace PlanCommand {

std::string plan(const std::string& text, SummaryMode mode, SummaryLength length)
{
    nlohmann::ordered_json calls = nlohmann::ordered_json::array();
    std::string lastStatus;
    const auto record = [&](const std::filesystem::path&, std::string_view system,
                            std::string_view user, int maxTokens, const CancelToken&,
                            const Pithwise::TextCallback&) {
        calls.push_back(
            {{"status", lastStatus}, {"system", system}, {"user", user}, {"maxTokens", maxTokens}});
        return "<note " + std::to_string(calls.size()) + ">";
    };
    Pithwise::run(
        text, mode, length, CancelToken{}, [&](const std::string& status) { lastStatus = status; },
        [](const std::string&) {}, record);

    nlohmann::ordered_json plan;
    plan["characters"] = Characters::count(WhiteSpace::normalised(text));
    plan["calls"] = std::move(calls);
    return plan.dump(2);
}

int run(const SummaryRequest& request)
{
    const std::string text = SourceText::read(request);
    AnswerPrinter(*stdout).finish(plan(text, request.mode, request.length));
    return 0;
}

} // namespace PlanCommand

#include "ModelOption.h"

#include "AppError.h"
#include "LlamaEngine.h"

#include <filesystem>
#include <system_error>

namespace ModelOption {

void requireFile(const std::string& model)
{
    std::error_code ignored;
    if (!model.empty() && !std::filesystem::is_regular_file(model, ignored))
        throw AppError("There is no file named " + model + ".");
}

Pithwise::Generate engine(const std::string& model)
{
    if (model.empty())
        return Pithwise::sharedEngine();
    return [chosen = std::filesystem::path(model)](
               const std::filesystem::path&, std::string_view system, std::string_view user,
               int maxTokens, const CancelToken& token, const Pithwise::TextCallback& onUpdate) {
        return LlamaEngine::shared().generate(chosen, system, user, maxTokens, token, onUpdate);
    };
}

} // namespace ModelOption

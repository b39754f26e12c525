#include "ModelOption.h"

#include "LlamaEngine.h"

namespace ModelOption {

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

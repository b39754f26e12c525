#include "ModelOption.h"

#include "AppError.h"

#include <filesystem>
#include <system_error>

namespace ModelOption {

void requireFile(const std::string& model)
{
    std::error_code ignored;
    if (!model.empty() && !std::filesystem::is_regular_file(model, ignored))
        throw AppError("There is no file named " + model + ".");
}

} // namespace ModelOption

#pragma once

#include "AppError.h"

#include <QTemporaryDir>

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>

/// A folder for the documents that a test makes; it goes with this object.
class DocumentFolder
{
public:
    // Not defaulted, so that there can be constant ones.
    DocumentFolder() {}
    DocumentFolder(const DocumentFolder&) = delete;
    DocumentFolder& operator=(const DocumentFolder&) = delete;

    /// Qt would leave files behind whose names are not UTF-8.
    ~DocumentFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path(), ignored);
    }

    std::filesystem::path path() const { return m_folder.path().toStdString(); }

    /// The file of that name, with `bytes` in it.
    std::filesystem::path write(std::string_view name, std::string_view bytes) const
    {
        std::filesystem::path file = path() / name;
        std::ofstream(file, std::ios::binary) << bytes;
        return file;
    }

    /// What users are told when `action` fails with an AppError, or how else it ended.
    template <typename Action>
    static std::string errorOf(Action action)
    {
        try {
            static_cast<void>(action());
        } catch (const AppError& error) {
            return error.message();
        } catch (const std::exception& error) {
            return std::string("not an AppError: ") + error.what();
        }
        return "no error";
    }

    /// The same for a process that may not read the folder. Where the tests run as root, whom
    /// nothing is forbidden, it becomes someone else meanwhile.
    template <typename Action>
    std::string errorWithoutPermission(Action action) const
    {
        constexpr uid_t nobody = 65534;
        const bool isRoot = ::geteuid() == 0;
        namespace fs = std::filesystem;
        fs::permissions(path(), fs::perms::none);
        if (isRoot && ::seteuid(nobody) != 0)
            return "could not give up being root";
        std::string error = errorOf(action);
        if (isRoot && ::seteuid(0) != 0)
            return "could not become root again";
        fs::permissions(path(), fs::perms::owner_all);
        return error;
    }

private:
    QTemporaryDir m_folder;
};

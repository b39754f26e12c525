#include "WriteAll.h"

#include <unistd.h>

#include <cerrno>

std::size_t writeAll(int descriptor, std::string_view bytes)
{
    std::size_t written = 0;
    while (written < bytes.size()) {
        const ssize_t count = ::write(descriptor, bytes.data() + written, bytes.size() - written);
        if (count >= 0)
            written += static_cast<std::size_t>(count);
        else if (errno != EINTR)
            break;
    }
    return written;
}

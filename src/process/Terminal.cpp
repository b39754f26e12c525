#include "Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

namespace Terminal {

bool isTerminal(std::FILE& stream)
{
    return isatty(fileno(&stream)) == 1;
}

int columns(std::FILE& stream)
{
    winsize size{};
    if (ioctl(fileno(&stream), TIOCGWINSZ, &size) != 0 || size.ws_col == 0)
        return 80;
    return size.ws_col;
}

} // namespace Terminal

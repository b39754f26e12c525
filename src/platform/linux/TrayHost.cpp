#include "TrayHost.h"

#include "DesktopKind.h"
#include "StatusNotifierHost.h"
#include "XEmbedHost.h"

namespace {

/// Waits for both kinds of panels; some panels are only one of them.
class AnyTrayHost : public TrayHost
{
public:
    explicit AnyTrayHost(const std::function<void()>& came)
        : m_xEmbed(DesktopKind::isX11() ? XEmbedHost::create(came) : nullptr),
          m_statusNotifier(came)
    {}

private:
    std::unique_ptr<XEmbedHost> m_xEmbed; // may be null
    StatusNotifierHost m_statusNotifier;
};

} // namespace

std::unique_ptr<TrayHost> TrayHost::create(const std::function<void()>& came)
{
    return std::make_unique<AnyTrayHost>(came);
}

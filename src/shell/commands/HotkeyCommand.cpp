#include "HotkeyCommand.h"

#include "AnswerPrinter.h"
#include "AppError.h"
#include "AppState.h"
#include "ClipboardOffer.h"
#include "DesktopSource.h"
#include "Interrupt.h"
#include "ModelCommand.h"
#include "ModelFile.h"
#include "QtApplication.h"
#include "QtText.h"
#include "StatusLine.h"

#include <filesystem>
#include <optional>
#include <system_error>

namespace HotkeyCommand {

namespace {

/// Shows a state on the standard streams, and ends the event loop when the summary is complete.
class Display
{
public:
    explicit Display(AppState& state) : m_state(state)
    {
        // Queued, because a field holds its new value only after the announcement.
        QObject::connect(
            &state, &AppState::willChange, &state, [this] { show(); }, Qt::QueuedConnection);
    }

    void hotkeyIsHandled()
    {
        m_isHandled = true;
        show();
    }

    void finish()
    {
        m_statusLine.clear();
        m_printer.finish(QtText::toUtf8(m_state.output.get()));
    }

private:
    void show()
    {
        if (m_state.status.get() != m_status) {
            m_status = m_state.status;
            if (!m_status.isEmpty())
                m_statusLine.show(QtText::toUtf8(m_status));
        }
        if (m_state.output.get() != m_output) {
            m_output = m_state.output;
            m_statusLine.clear();
            m_printer.update(QtText::toUtf8(m_output));
        }
        // If no run could be started, the state still says that it is working, but has an error.
        if (m_isHandled && (!m_state.isWorking || m_state.errorMessage.get()))
            quitSoon();
    }

    AppState& m_state;
    StatusLine m_statusLine{*stderr};
    AnswerPrinter m_printer{*stdout};
    QString m_status;
    QString m_output;
    bool m_isHandled = false;
};

QCoro::Task<> handleHotkey(AppState& state, Display& display)
{
    co_await state.handleHotkey();
    display.hotkeyIsHandled();
}

/// The real services, but for the selection, which has been read already: what that has put back on
/// the clipboard must outlive this process.
AppServices services(const std::string& model, std::string selection)
{
    AppServices services = AppServices::system();
    services.grabSelection =
        [selection = std::move(selection)]() -> QCoro::Task<std::optional<std::string>> {
        co_return selection.empty() ? std::nullopt : std::optional(selection);
    };
    services.generate = Pithwise::sharedEngine(model);
    if (!model.empty())
        services.isModelReady = [] { return true; };
    return services;
}

void requireModel(const std::string& model)
{
    ModelCommand::requireFile(model);
    std::error_code ignored;
    if (model.empty() && !std::filesystem::is_regular_file(ModelFile::path(), ignored))
        throw AppError("The language model is missing; \"pithwise model download\" fetches it.");
}

void throwError(const AppState& state)
{
    if (const std::optional<QString>& message = state.errorMessage.get())
        throw AppError(QtText::toUtf8(*message));
}

} // namespace

int run(const Request& request)
{
    requireModel(request.model);
    std::string selection = DesktopSource::selection();
    QtArguments arguments;
    const QCoreApplication application(arguments.count, arguments.values);
    const Interrupt interrupt(quitSoon);
    AppState state(services(request.model, std::move(selection)));
    Display display(state);
    const QCoro::Task<> task = handleHotkey(state, display);
    QCoreApplication::exec();

    const int status = interrupt.exitStatus();
    if (status == 0)
        throwError(state);
    display.finish();
    if (status != 0)
        return status;
    if (request.appendsToNote)
        state.appendToDailyNote();
    if (request.copies)
        ClipboardOffer::put(QtText::toUtf8(state.output.get()));
    throwError(state);
    return 0;
}

} // namespace HotkeyCommand

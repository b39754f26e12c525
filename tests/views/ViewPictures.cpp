#include "ViewPictures.h"

#include "AppState.h"
#include "ContentView.h"
#include "Theme.h"

#include <QApplication>
#include <QDir>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QScrollBar>

#include <functional>

namespace ViewPictures {

namespace {

using Tab = AppState::Tab;

QString article()
{
    return QStringLiteral("The council met on Tuesday to decide on the budget of the project. "
                          "After two hours it agreed on a rise of twelve percent, and moved the "
                          "opening by two weeks.\n")
        .repeated(6);
}

QString bullets()
{
    return QStringLiteral(
        "- **Budget:** the project gets *12 %* more, and the schedule moves by two weeks\n"
        "- **Risk:** the [report](https://a.example) that `audit.txt` names is not there yet\n"
        "- **Next:** the board decides on Friday");
}

QString longSummary()
{
    return QStringLiteral("## Notes\n\nThe council agreed on **more money and more time**.\n\n") +
           QStringLiteral("- [ ] Write to the board \U0001F4EC about the *new* schedule and ask "
                          "for the report before Friday\n- [x] Book the hall\n")
               .repeated(9);
}

/// The interface on a state of which nothing works by itself.
struct Interface
{
    explicit Interface(const Theme& theme) : view(state, theme, {[] {}, [](const QUrl&) {}})
    {
        view.setModelState(ModelManager::Ready{});
    }

    void fill(const QString& label)
    {
        state.sourceText = article();
        state.sourceLabel = label;
    }

    void drag(bool isInside)
    {
        auto* const zone = view.findChild<QWidget*>(QStringLiteral("dropZone"));
        QMimeData file;
        file.setUrls({QUrl(QStringLiteral("file:///report.pdf"))});
        QDragEnterEvent enter({}, Qt::CopyAction, &file, Qt::LeftButton, Qt::NoModifier);
        QDragLeaveEvent leave;
        QEvent& event = isInside ? static_cast<QEvent&>(enter) : leave;
        QApplication::sendEvent(zone, &event);
    }

    AppState state{AppServices{}};
    ContentView view;
};

struct Picture
{
    const char* name;
    std::function<void(Interface&)> prepare;
};

std::vector<Picture> setups()
{
    using Failed = ModelManager::Failed;
    using Downloading = ModelManager::Downloading;
    return {
        {"setup-idle", [](Interface& i) { i.view.setModelState(ModelManager::Idle{}); }},
        {"setup-begun", [](Interface& i) { i.view.setModelState(Downloading{0}); }},
        {"setup-downloading", [](Interface& i) { i.view.setModelState(Downloading{0.57}); }},
        {"setup-downloading-focus",
         [](Interface& i) {
             i.view.setModelState(Downloading{0.57});
             i.view.takeFocus();
         }},
        {"setup-failed",
         [](Interface& i) {
             i.view.setModelState(Failed{"The download of the model was interrupted."});
         }},
        {"setup-failed-long",
         [](Interface& i) {
             i.view.setModelState(
                 Failed{"Could not write /home/" + std::string(90, 'x') +
                        "/model.gguf: there is no space left on the device, and the rest of this "
                        "sentence says at some length what can be done about it."});
         }},
    };
}

std::vector<Picture> tabs()
{
    return {
        {"clipboard-empty", [](Interface&) {}},
        {"clipboard-typed",
         [](Interface& i) {
             i.state.sourceText = QStringLiteral("a");
             i.state.sourceLabel = QStringLiteral("Pasted text");
         }},
        {"clipboard-filled", [](Interface& i) { i.fill(QStringLiteral("Clipboard")); }},
        {"clipboard-long-label",
         [](Interface& i) {
             i.fill(QStringLiteral("Minutes of the ").repeated(12) + QStringLiteral(".pdf"));
         }},
        {"clipboard-long-line",
         [](Interface& i) {
             i.state.sourceText = article().replace(u'\n', u' ').repeated(100);
             i.state.sourceLabel = QStringLiteral("Clipboard");
         }},
        {"clipboard-many-lines",
         [](Interface& i) {
             i.state.sourceText = QStringLiteral("One of many lines.\n").repeated(30'000);
             i.state.sourceLabel = QStringLiteral("log.txt");
         }},
        {"clipboard-focus", [](Interface& i) { i.view.takeFocus(); }},
        {"document-empty", [](Interface& i) { i.state.tab = Tab::document; }},
        {"document-filled",
         [](Interface& i) {
             i.state.tab = Tab::document;
             i.fill(QStringLiteral("report.pdf"));
             i.state.output = bullets();
         }},
        {"document-target",
         [](Interface& i) {
             i.state.tab = Tab::document;
             QApplication::processEvents();
             i.drag(true);
         }},
        {"web-empty", [](Interface& i) { i.state.tab = Tab::web; }},
        {"web-filled",
         [](Interface& i) {
             i.state.tab = Tab::web;
             i.state.urlString = QStringLiteral("https://a.example/news/budget");
         }},
        {"web-long",
         [](Interface& i) {
             i.state.tab = Tab::web;
             i.state.urlString =
                 QStringLiteral("https://a.example/") + QStringLiteral("budget-").repeated(20);
             i.fill(i.state.urlString);
         }},
        {"web-working",
         [](Interface& i) {
             i.state.tab = Tab::web;
             i.state.urlString = QStringLiteral("https://a.example/news/budget");
             i.state.isWorking = true;
             i.state.status = QStringLiteral("Fetching page…");
         }},
        {"capture", [](Interface& i) { i.state.tab = Tab::capture; }},
        {"capture-working",
         [](Interface& i) {
             i.state.tab = Tab::capture;
             i.state.isWorking = true;
             i.state.status = QStringLiteral("Capturing and reading text…");
         }},
    };
}

std::vector<Picture> outputs()
{
    const auto begin = [](Interface& i) {
        i.fill(QStringLiteral("report.pdf"));
        i.state.isWorking = true;
        i.state.status = QStringLiteral("Summarizing…");
    };
    const auto end = [](Interface& i, const QString& output) {
        i.fill(QStringLiteral("report.pdf"));
        i.state.output = output;
    };
    return {
        {"output-waiting", begin},
        {"output-waiting-long",
         [begin](Interface& i) {
             begin(i);
             i.state.status = QStringLiteral("Reading Minutes of ") +
                              QStringLiteral("the council ").repeated(10) + u'…';
         }},
        {"output-streaming",
         [begin](Interface& i) {
             begin(i);
             i.state.output = bullets().first(60);
         }},
        {"output-done", [end](Interface& i) { end(i, bullets()); }},
        {"output-long", [end](Interface& i) { end(i, longSummary()); }},
        {"output-scrolled",
         [end](Interface& i) {
             end(i, longSummary());
             QApplication::processEvents();
             QScrollBar& bar = *i.view.findChild<SummaryView*>()->verticalScrollBar();
             bar.setValue(bar.maximum() / 2);
         }},
        {"output-toast",
         [end](Interface& i) {
             end(i, bullets());
             i.state.toast = QStringLiteral("Markdown copied");
         }},
        {"output-error",
         [](Interface& i) { i.state.errorMessage = QStringLiteral("The clipboard has no text."); }},
        {"output-error-over-summary",
         [end](Interface& i) {
             end(i, bullets());
             i.state.errorMessage = QStringLiteral("Nothing to summarize yet.");
         }},
        {"output-error-long",
         [](Interface& i) {
             i.state.errorMessage = QStringLiteral("Could not read https://a.example/") +
                                    QStringLiteral("budget").repeated(30) +
                                    QStringLiteral(": the host was not found. ").repeated(20);
         }},
    };
}

/// Lets the views take over the state, and their parts find their places.
void settle()
{
    for (int turn = 0; turn < 5; ++turn)
        QApplication::processEvents();
}

bool saveOne(QWidget& widget, qreal scale, const QString& file)
{
    QImage image((QSizeF(widget.size()) * scale).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    widget.render(&image);
    return image.save(file);
}

} // namespace

bool save(const Theme& theme, const QDir& folder, const QString& name)
{
    bool isSaved = true;
    for (const auto& pictures : {setups(), tabs(), outputs()}) {
        for (const Picture& picture : pictures) {
            Interface interface(theme);
            interface.view.show();
            interface.view.activateWindow();
            settle();
            if (QWidget* const focused = interface.view.focusWidget())
                focused->clearFocus();
            picture.prepare(interface);
            settle();
            for (const int scale : {1, 2}) {
                const QString file = QStringLiteral("%1-%2-%3x.png")
                                         .arg(QString::fromUtf8(picture.name), name)
                                         .arg(scale);
                isSaved = saveOne(interface.view, scale, folder.filePath(file)) && isSaved;
            }
        }
    }
    return isSaved;
}

} // namespace ViewPictures

#include <QApplication>
#include <QBuffer>
#include <QClipboard>
#include <QCommandLineParser>
#include <QDrag>
#include <QImage>
#include <QKeyEvent>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QTimer>
#include <QUrl>

#include <cstdio>
#include <functional>

namespace {

/// Has nothing to select, tells nobody anything, and copies upon the shortcut, sooner or later. It
/// prints the keys that reach it.
class Canvas : public QWidget
{
public:
    Canvas(QString copied, int delay) : m_copied(std::move(copied)), m_delay(delay)
    {
        setFocusPolicy(Qt::StrongFocus);
    }

protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        std::printf("%s\n", qPrintable(QKeySequence(event->keyCombination()).toString()));
        std::fflush(stdout);
        if (event->matches(QKeySequence::Copy))
            QTimer::singleShot(m_delay, this, [this] { copy(); });
    }

private:
    void copy() const
    {
        if (m_copied != "an image") {
            QApplication::clipboard()->setText(m_copied);
            return;
        }
        QImage image(3, 2, QImage::Format_RGB32);
        image.fill(Qt::green);
        QApplication::clipboard()->setImage(image);
    }

    QString m_copied;
    int m_delay; // milliseconds
};

/// Lets what it is made with be dragged out of it, and prints the action that whatever is under the
/// pointer would take, and in the end the one that was taken.
class DragSource : public QWidget
{
public:
    explicit DragSource(std::function<QMimeData*()> makeData) : m_makeData(std::move(makeData)) {}

protected:
    void mouseMoveEvent(QMouseEvent*) override
    {
        auto* const drag = new QDrag(this);
        drag->setMimeData(m_makeData());
        connect(drag, &QDrag::actionChanged, [](Qt::DropAction action) { tell("over", action); });
        tell("dragging", Qt::IgnoreAction);
        tell("dropped", drag->exec(Qt::CopyAction | Qt::MoveAction));
    }

private:
    static void tell(const char* what, Qt::DropAction action)
    {
        const char* name = action == Qt::MoveAction ? "move" : "other";
        if (action == Qt::IgnoreAction)
            name = "none";
        if (action == Qt::CopyAction)
            name = "copy";
        std::printf("%s %s\n", what, name);
        std::fflush(stdout);
    }

    std::function<QMimeData*()> m_makeData;
};

std::unique_ptr<QWidget> makeFileSource(const QStringList& files)
{
    return std::make_unique<DragSource>([files] {
        QList<QUrl> urls;
        for (const QString& file : files)
            urls.append(QUrl::fromLocalFile(file));
        auto* const data = new QMimeData;
        data->setUrls(urls);
        return data;
    });
}

std::unique_ptr<QWidget> makeTextSource(const QString& text)
{
    return std::make_unique<DragSource>([text] {
        auto* const data = new QMimeData;
        data->setText(text);
        return data;
    });
}

/// An editor. Where `primary` is not empty, it comes as PRIMARY in place of what is selected.
std::unique_ptr<QWidget> makeEditor(const QString& text, const QString& primary)
{
    auto editor = std::make_unique<QPlainTextEdit>(text);
    if (!primary.isEmpty()) {
        QObject::connect(
            editor.get(), &QPlainTextEdit::selectionChanged, editor.get(),
            [primary] { QApplication::clipboard()->setText(primary, QClipboard::Selection); },
            Qt::QueuedConnection); // the editor itself sets it upon this
    }
    return editor;
}

/// A window in which an editor comes after an element of that many children.
std::unique_ptr<QWidget> makeCrowd(std::unique_ptr<QWidget> editor, int children)
{
    auto window = std::make_unique<QWidget>();
    auto* const crowd = new QWidget(window.get());
    for (int i = 0; i < children; ++i)
        new QWidget(crowd);
    auto* const box = new QWidget(window.get());
    editor->setParent(box);
    editor->setFocus();
    editor.release(); // NOLINT(bugprone-unused-return-value): its parent's now
    return window;
}

/// Puts a text of about `size` bytes and two more formats on the clipboard.
void own(int size)
{
    QByteArray text;
    for (quint32 number = 1; text.size() < size; number = number * 1664525U + 1013904223U)
        text += QByteArray::number(number, 36) + (number % 7 == 0 ? " \u00E9\n" : " ");
    auto* data = new QMimeData;
    data->setText(QString::fromUtf8(text));
    data->setHtml("<b>bold</b>");
    QImage image(64, 48, QImage::Format_RGB32);
    image.fill(Qt::red);
    image.setPixelColor(3, 4, Qt::blue);
    data->setImageData(image);
    QApplication::clipboard()->setMimeData(data);
    std::puts("owner");
    std::fflush(stdout);
}

} // namespace

/// A foreign application for tests: one with a text to select, one that copies, one that owns the
/// clipboard, or one to drag from.
int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addOptions({{"title", "", "text"},
                       {"editor", "", "text"},
                       {"copies", "", "text"},
                       {"drags", "", "file"},
                       {"drags-text", "", "text"},
                       {"delay", "", "milliseconds", "0"},
                       {"children", "", "number", "0"},
                       {"owns", "", "bytes"},
                       {"primary", "", "text"}});
    parser.process(application);
    std::unique_ptr<QWidget> window;
    if (parser.isSet("editor"))
        window = makeEditor(parser.value("editor"), parser.value("primary"));
    else if (parser.isSet("drags"))
        window = makeFileSource(parser.values("drags"));
    else if (parser.isSet("drags-text"))
        window = makeTextSource(parser.value("drags-text"));
    else
        window = std::make_unique<Canvas>(parser.value("copies"), parser.value("delay").toInt());
    if (parser.isSet("children"))
        window = makeCrowd(std::move(window), parser.value("children").toInt());
    window->setWindowTitle(parser.value("title"));
    window->resize(300, 200);
    window->show();
    if (parser.isSet("owns"))
        own(parser.value("owns").toInt());
    return QApplication::exec();
}

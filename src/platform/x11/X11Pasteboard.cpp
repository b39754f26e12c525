#include "X11Pasteboard.h"

#include "SelectionForm.h"

#include <QStringConverter>

#include <algorithm>
#include <array>
#include <cstring>
#include <map>
#include <set>
#include <string_view>

namespace {

using std::chrono::milliseconds;

constexpr milliseconds setupLimit(100);
// An owner that is silent for this long is taken for frozen.
constexpr milliseconds patience(300);
constexpr std::size_t maximumTargets = 256;

// Targets that are not asked for. Asking for them would change something, or would give what is of
// no use later: facts about the moment, names of the owner's pictures in the X server, or what Qt
// makes from another target.
constexpr std::array<std::string_view, 22> targetsWithoutData = {
    "TARGETS",    "TIMESTAMP",
    "MULTIPLE",   "SAVE_TARGETS",
    "DELETE",     "BITMAP",
    "DRAWABLE",   "PIXMAP",
    "COLORMAP",   "FOREGROUND",
    "BACKGROUND", "CLASS",
    "NAME",       "CLIENT_WINDOW",
    "WINDOW",     "HOST_NAME",
    "OWNER_OS",   "PROCESS",
    "TASK",       "USER",
    "ATOM_PAIR",  "application/x-qt-image"};

bool carriesData(std::string_view target)
{
    return !target.empty() && !target.starts_with("INSERT_") &&
           std::find(targetsWithoutData.begin(), targetsWithoutData.end(), target) ==
               targetsWithoutData.end();
}

/// The order in which targets are asked for: plain text first, then other contents, and last what
/// is usually the same text again.
int rank(std::string_view target)
{
    if (target == "UTF8_STRING")
        return 0;
    const bool isTextAgain = target == "STRING" || target == "TEXT" || target == "COMPOUND_TEXT" ||
                             target.starts_with("text/plain");
    return isTextAgain ? 2 : 1;
}

/// `text` in Latin-1, nothing if it has other characters.
std::optional<std::string> latin1(const std::string& text)
{
    // Otherwise a leading U+FEFF would be dropped.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringConverter::Flag::ConvertInitialBom);
    QStringEncoder encoder(QStringEncoder::Latin1);
    const QString units = decoder(QByteArrayView(text));
    const QByteArray bytes = encoder(units);
    return encoder.hasError() ? std::nullopt : std::optional(bytes.toStdString());
}

} // namespace

X11Pasteboard::X11Pasteboard(std::unique_ptr<X11Connection> connection)
    : m_connection(std::move(connection)),
      m_server(SelectionServer::create()),
      m_reader(*m_connection),
      m_clipboard(m_connection->atom("CLIPBOARD", X11Connection::Clock::now() + setupLimit))
{}

/// The targets that the owner offers and that carry data, each once. Nothing if the owner does not
/// tell them, or tells too many to be meant.
std::optional<std::vector<X11Pasteboard::Target>> X11Pasteboard::targets(Deadline deadline)
{
    const auto list =
        m_reader.convert(m_clipboard, m_connection->atom("TARGETS", deadline), patience, deadline);
    if (!list || list->format != 32 || list->bytes.size() / sizeof(xcb_atom_t) > maximumTargets)
        return std::nullopt;
    std::vector<xcb_atom_t> atoms(list->bytes.size() / sizeof(xcb_atom_t));
    if (!atoms.empty())
        std::memcpy(atoms.data(), list->bytes.data(), atoms.size() * sizeof(xcb_atom_t));
    std::vector<Target> result;
    std::set<xcb_atom_t> seen;
    for (const xcb_atom_t atom : atoms) {
        if (!seen.insert(atom).second)
            continue;
        std::string name = m_connection->atomName(atom, deadline); // empty if it is no atom
        if (carriesData(name))
            result.push_back({atom, std::move(name)});
    }
    return result;
}

/// The data of `targets`, as one item, in their order.
Pasteboard::Snapshot X11Pasteboard::fetch(const std::vector<Target>& targets, Deadline deadline)
{
    Snapshot snapshot;
    std::map<xcb_atom_t, Representation> fetched;
    std::vector<Target> sorted = targets;
    // If time runs out, the same text in another coding is the least loss.
    std::stable_sort(sorted.begin(), sorted.end(), [](const Target& one, const Target& other) {
        return rank(one.name) < rank(other.name);
    });
    for (const Target& target : sorted) {
        if (X11Connection::Clock::now() >= deadline) {
            snapshot.isComplete = false;
            break;
        }
        auto property = m_reader.convert(m_clipboard, target.atom, patience, deadline);
        if (!property) {
            // The owner does not have what it refuses.
            snapshot.isComplete = snapshot.isComplete && !m_reader.hasStalled();
            continue;
        }
        const SelectionForm form = {m_connection->atomName(property->type, deadline),
                                    property->format};
        fetched[target.atom] = {target.name, std::move(property->bytes), form.text()};
    }
    Item& item = snapshot.items.emplace_back();
    for (const Target& target : targets) {
        if (const auto found = fetched.find(target.atom); found != fetched.end())
            item.push_back(std::move(found->second));
    }
    return snapshot;
}

Pasteboard::Snapshot X11Pasteboard::snapshot(milliseconds limit)
{
    const Deadline deadline = X11Connection::Clock::now() + limit;
    const auto owner = m_connection->selectionOwner(m_clipboard, deadline);
    if (!owner || *owner == XCB_NONE)
        return {{}, owner.has_value()};
    const auto offered = targets(deadline);
    return offered ? fetch(*offered, deadline) : Snapshot{{{}}, false};
}

std::optional<std::string> X11Pasteboard::plainText(milliseconds limit)
{
    const Deadline deadline = X11Connection::Clock::now() + limit;
    m_hasSilentOwner = false;
    if (m_connection->selectionOwner(m_clipboard, deadline).value_or(XCB_NONE) == XCB_NONE)
        return std::nullopt;
    std::optional<std::string> text = m_reader.text(m_clipboard, limit, deadline);
    m_hasSilentOwner = m_reader.hasStalled() && !m_connection->isLost();
    return text;
}

void X11Pasteboard::writeText(std::string text)
{
    std::optional<std::string> string = latin1(text);
    Item item = {{"UTF8_STRING", text, "UTF8_STRING 8"},
                 {"text/plain;charset=utf-8", text, "text/plain;charset=utf-8 8"}};
    // Programs that ask for this name leave the form to the owner.
    item.push_back({"TEXT", std::move(text), "UTF8_STRING 8"});
    if (string)
        item.push_back({"STRING", *std::move(string), "STRING 8"});
    write(std::move(item));
}

#pragma once

#include <xcb/xcb.h>

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

/// Owns the clipboard as badly as a test wants: a client of its own, on a thread of its own.
class SelectionOwner
{
public:
    /// What it answers a request for a target with.
    struct Answer
    {
        std::string type; // empty to refuse
        int format = 8;   // bits
        std::string bytes;
        bool isSilent = false;  // answers nothing at all
        bool isLate = false;    // answers right before the next question's answer
        bool isEndless = false; // comes in pieces, of which there is always another one
    };

    /// `answer` is called on the thread.
    explicit SelectionOwner(std::function<Answer(const std::string& target)> answer);
    ~SelectionOwner();
    SelectionOwner(const SelectionOwner&) = delete;
    SelectionOwner& operator=(const SelectionOwner&) = delete;

    /// The bytes of a list of atoms with these names.
    std::string atoms(const std::vector<std::string>& names);
    /// How many bytes it has given away without an end.
    std::size_t endlessBytes() const { return m_endlessBytes; }
    /// The targets that have been asked for.
    std::vector<std::string> asked();

private:
    xcb_atom_t atom(const std::string& name);
    std::string name(xcb_atom_t atom);
    void serve();
    void take(const xcb_selection_request_event_t& request);
    void answer(const xcb_selection_request_event_t& request, const Answer& answer);
    void send(const xcb_selection_request_event_t& request, xcb_atom_t property);
    void answerEndlessly(const xcb_selection_request_event_t& request);
    void goOn(const xcb_property_notify_event_t& removal);

    std::function<Answer(const std::string&)> m_answer;
    xcb_connection_t* m_connection;
    xcb_window_t m_window;
    std::mutex m_mutex;
    std::vector<std::string> m_asked; // under m_mutex
    std::vector<std::pair<xcb_selection_request_event_t, Answer>> m_late;
    std::atomic<std::size_t> m_endlessBytes = 0;
    std::atomic<bool> m_isEnding = false;
    std::thread m_thread;
};

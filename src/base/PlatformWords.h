#pragma once

/// Sentences that differ by platform, because they name its keys, its settings or the computer
/// itself. All are UTF-8.
struct PlatformWords
{
    const char* modelSetup;      // shown while there is no model yet
    const char* hotkey;          // the footer while the hotkey works
    const char* withoutHotkey;   // the footer while it does not
    const char* nothingSelected; // the hotkey found nothing, but may read all
    const char* nothingReadable; // the hotkey may not read other windows
    const char* captureRefused;  // a capture failed: the screen may not be read
    const char* captureFailed;   // a capture failed though it may be read
    const char* captureNote;     // below the buttons that capture
};

inline constexpr PlatformWords macWords = {
    .modelSetup = "A small language model (about 1 GB) is downloaded once. After that, everything "
                  "runs offline on your Mac.",
    .hotkey = "Hotkey: ⌃⌥S  ·  captures selection or window",
    .withoutHotkey = "",
    .nothingSelected = "Select some text first, or grant Accessibility and Screen Recording access "
                       "in System Settings.",
    .nothingReadable = "Select some text first, or grant Accessibility and Screen Recording access "
                       "in System Settings.",
    .captureRefused = "Capture failed. Allow Screen Recording for this app in System Settings → "
                      "Privacy & Security.",
    .captureFailed = "Capture failed. Allow Screen Recording for this app in System Settings → "
                     "Privacy & Security.",
    .captureNote = "Text is read from the capture with on-device OCR. Requires Screen Recording "
                   "permission.",
};

inline constexpr PlatformWords linuxWords = {
    .modelSetup = "A small language model (about 1 GB) is downloaded once. After that, everything "
                  "runs offline on your computer.",
    .hotkey = "Hotkey: Ctrl+Alt+S  ·  captures selection or window",
    .withoutHotkey = "\"pithwise hotkey\" captures selection or window",
    .nothingSelected = "Select some text first, or copy some.",
    .nothingReadable = "Pithwise can read other windows only in an X11 session. Choose one when "
                       "you log in.",
    .captureRefused = "Capture failed. Pithwise can read the screen only in an X11 session. Choose "
                      "one when you log in.",
    .captureFailed = "Capture failed. The screen could not be read.",
    .captureNote = "Text is read from the capture with on-device OCR.",
};

#ifdef __APPLE__
inline constexpr const PlatformWords& platformWords = macWords;
#else
inline constexpr const PlatformWords& platformWords = linuxWords;
#endif

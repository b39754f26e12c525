#pragma once

class QDir;
class QString;
class Theme;

/// Pictures of the whole interface, in every state that it can be in.
namespace ViewPictures {

/// Writes "<view>-<state>-<name>-<scale>x.png" for each into `folder`; false where that failed.
bool save(const Theme& theme, const QDir& folder, const QString& name);

} // namespace ViewPictures

#pragma once

/// The type scale; Theme has a font for each.
enum class TextStyle { title, headline, body, callout, caption, boldCaption, smallCaption };

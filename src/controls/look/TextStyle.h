#pragma once

/// The sizes and weights of text. Theme has a font for each.
enum class TextStyle { title, headline, body, callout, caption, boldCaption, smallCaption };

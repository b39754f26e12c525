#pragma once

#include <QImage>
#include <QString>

#include <string>
#include <vector>

/// The page of known text that recognition is measured with. Needs a QGuiApplication.
namespace RecognitionPage {

struct Look
{
    QString family;
    int pixelSize;
    bool isDark;
};

/// The text, word by word; punctuation belongs to the word it touches.
std::vector<std::string> words();

/// The text as a screenshot of 1280 by 900 pixels shows it.
QImage render(const Look& look);

} // namespace RecognitionPage

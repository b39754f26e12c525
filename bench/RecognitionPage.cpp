#include "RecognitionPage.h"

#include <QFont>
#include <QFontMetrics>
#include <QPainter>

#include <sstream>

namespace RecognitionPage {

/// Six hundred words as they stand on screens: prose, names, figures, punctuation.
static constexpr std::string_view prose =
    "The harbour office opens at seven, long before the first ferry leaves for the islands. "
    "By then Martha has read the weather report, filled the kettle and written three lines on "
    "the board beside the door: wind, tide, delays. Nobody asked her to keep that board. She "
    "began it in 2009, when the old loudspeaker failed during a storm, and travellers have "
    "trusted it ever since. On a quiet day the lines are short. On a bad one she wipes and "
    "rewrites them twenty times, and the people in the queue read every version aloud to each "
    "other as if it were a serial story. Last winter the company that runs the boats sent two "
    "engineers to replace the board with a screen. They measured the wall, drilled six holes "
    "and promised that everything would work by Friday. The screen arrived on Thursday, "
    "wrapped in blue foam, and showed a map of a different coast. It took 11 phone calls, one "
    "new cable and $480 in repairs to make it display the right harbour; even then the times "
    "were wrong by an hour, because somebody had forgotten that clocks change in spring. "
    "Martha said nothing. What a small notice does well is easy to describe and hard to copy. "
    "It is brief, since there is room for only three lines. It is honest, since the person "
    "who wrote it stands next to it. And it is current, because an error is noticed within a "
    "minute and corrected with a sleeve. A system that reports the same facts to 40 harbours "
    "at once has none of these habits unless someone builds them in on purpose. The engineers "
    "understood this sooner than their manager did. In their second report (page 14, table 3) "
    "they asked for a keyboard under the screen, a larger typeface and permission for local "
    "staff to overrule the central timetable. The request went through four departments. "
    "Finance calculated that a keyboard costs 35 euros and that 40 of them, with freight, "
    "would come to 1,612. Marketing proposed a slogan. Only the captains, who were asked "
    "last, gave a useful answer: they had been calling Martha by radio for years, and "
    "whatever she wrote was what they sailed by. \"If the machine disagrees with her,\" one of "
    "them noted, \"we wait for the machine to change its mind.\" So the keyboard came. The "
    "screen now carries three short lines in white on black, signed with an M, and beneath "
    "them a strip of smaller text with prices, rules and telephone numbers that hardly anyone "
    "reads. Visitors photograph it because it is the only display on the whole coast that "
    "says things like \"choppy, but the soup is good\" or \"back at 9:20, watch the third step\". "
    "The head office has stopped complaining. Complaints from passengers fell by 62% within a "
    "season, which is a figure that even a manager can repeat at dinner. Two neighbouring "
    "ports have asked how it was done. Martha wrote back on a postcard. Keep it short, she "
    "advised; tell people what you know, when you knew it and what you will do next; put your "
    "initial at the end. There was space left over, so she added the forecast for Sunday and "
    "a drawing of a gull. The chalk board still hangs behind the door, just in case. Every "
    "evening, after the last boat has been tied up and the lamps along the pier are lit, she "
    "copies the day's three lines onto it by hand, reads them once and goes home through the "
    "rain, whistling an old tune whose words she never learned.";

std::vector<std::string> words()
{
    std::istringstream stream{std::string(prose)};
    std::vector<std::string> result;
    for (std::string word; stream >> word;)
        result.push_back(word);
    return result;
}

QImage render(const Look& look)
{
    QFont font(look.family);
    font.setPixelSize(look.pixelSize);
    QImage image(1280, 900, QImage::Format_RGB32);
    image.fill(look.isDark ? QColor(30, 31, 34) : QColor(Qt::white));
    QPainter painter(&image);
    painter.setFont(font);
    painter.setPen(look.isDark ? QColor(220, 221, 222) : QColor(Qt::black));
    painter.drawText(image.rect().adjusted(24, 20, -24, -20), Qt::TextWordWrap,
                     QString::fromUtf8(prose.data(), static_cast<qsizetype>(prose.size())));
    return image;
}

} // namespace RecognitionPage

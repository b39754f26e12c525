#include "HardPictures.h"

#include <QFont>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <sstream>

namespace HardPictures {

namespace {

constexpr const char* prose =
    "The harbour office opens at seven, long before the first ferry leaves for the islands. By "
    "then Martha has read the weather report, filled the kettle and written three lines on the "
    "board beside the door: wind, tide, delays. Nobody asked her to keep that board.";

constexpr std::array fonts = {"DejaVu Sans", "DejaVu Serif", "DejaVu Sans Mono"};

struct Look
{
    const char* family = fonts[0];
    int pixelSize = 14;
    QColor ink = Qt::black;
    QColor ground = Qt::white;
    double tilt = 0; // degrees
};

QImage drawn(const Look& look)
{
    constexpr int width = 640;
    const int height = std::max(200, look.pixelSize * look.pixelSize * 170 / width + 80);
    QImage image(width, height,
                 look.ground.alpha() == 255 ? QImage::Format_RGB32
                                            : QImage::Format_ARGB32_Premultiplied);
    image.fill(look.ground);
    QPainter painter(&image);
    QFont font(QString::fromLatin1(look.family));
    font.setPixelSize(look.pixelSize);
    painter.setFont(font);
    painter.setPen(look.ink);
    const QPointF centre = QRectF(image.rect()).center();
    painter.translate(centre);
    painter.rotate(look.tilt);
    painter.translate(-centre);
    painter.drawText(image.rect().adjusted(30, 24, -30, -24), Qt::TextWordWrap,
                     QString::fromLatin1(prose));
    return image;
}

/// The luminance that contrasts are measured in, 0 to 1.
double luminance(QColor colour)
{
    const auto linear = [](double value) {
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

double contrast(QColor a, QColor b)
{
    const auto [less, more] = std::minmax({luminance(a), luminance(b)}); // by value
    return (more + 0.05) / (less + 0.05);
}

/// The grey nearest to the grey `ground` that has the contrast `ratio` to it.
QColor inkOn(QColor ground, double ratio)
{
    const int step = luminance(ground) > 0.15 ? -1 : 1;
    int shade = ground.red();
    while (shade + step >= 0 && shade + step <= 255 &&
           contrast(QColor(shade, shade, shade), ground) < ratio)
        shade += step;
    return {shade, shade, shade};
}

void addNoise(QImage& image, double deviation)
{
    std::mt19937 random(1);
    std::normal_distribution<double> change(0, deviation);
    const auto changed = [](int shade, double by) {
        return std::clamp(static_cast<int>(std::lround(shade + by)), 0, 255);
    };
    for (int y = 0; y < image.height(); ++y) {
        auto* const row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const double by = change(random);
            row[x] = qRgb(changed(qRed(row[x]), by), changed(qGreen(row[x]), by),
                          changed(qBlue(row[x]), by));
        }
    }
}

/// The text on nothing, with a fringe of so many pixels around its letters.
QImage withFringe(const Look& look, QColor fringe, int width)
{
    Look edge = look;
    edge.ink = fringe;
    const QImage edges = drawn(edge);
    QImage image(edges.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    for (int x = -width; x <= width; ++x) {
        for (int y = -width; y <= width; ++y)
            painter.drawImage(x, y, edges);
    }
    painter.drawImage(0, 0, drawn(look));
    painter.end();
    return image.convertToFormat(QImage::Format_ARGB32);
}

std::string text(double value)
{
    std::ostringstream stream;
    stream << value;
    return stream.str();
}

void addContrasts(std::vector<Row>& rows)
{
    for (const double ratio : {1.5, 2.0, 3.0, 4.5}) {
        Row row{"contrast of " + text(ratio), {}};
        for (const QColor ground : {QColor(Qt::white), QColor(128, 128, 128), QColor(30, 30, 30)}) {
            for (const char* family : fonts) {
                for (const int pixelSize : {11, 14, 20, 24})
                    row.pictures.push_back(drawn({.family = family,
                                                  .pixelSize = pixelSize,
                                                  .ink = inkOn(ground, ratio),
                                                  .ground = ground}));
            }
        }
        rows.push_back(std::move(row));
    }
}

void addColours(std::vector<Row>& rows)
{
    const std::array pairs = {
        std::pair{QColor(Qt::red), QColor(Qt::blue)},
        std::pair{QColor(Qt::red), QColor(Qt::green)},
        std::pair{QColor(200, 0, 0), QColor(0, 110, 0)},
        std::pair{QColor(Qt::yellow), QColor(Qt::white)},
        std::pair{QColor(255, 200, 0), QColor(Qt::white)},
        std::pair{QColor(Qt::cyan), QColor(Qt::white)},
        std::pair{QColor(0, 90, 255), QColor(40, 40, 40)},
        std::pair{QColor(255, 105, 180), QColor(144, 238, 144)},
        std::pair{QColor(255, 140, 0), QColor(70, 130, 180)},
        std::pair{QColor(Qt::magenta), QColor(128, 128, 128)},
    };
    Row row{"colours on colours", {}};
    for (const auto& [ink, ground] : pairs) {
        for (const char* family : fonts) {
            for (const int pixelSize : {14, 24})
                row.pictures.push_back(drawn(
                    {.family = family, .pixelSize = pixelSize, .ink = ink, .ground = ground}));
        }
    }
    rows.push_back(std::move(row));
}

void addTransparent(std::vector<Row>& rows)
{
    for (const int width : {0, 1, 3}) {
        for (const bool isLight : {false, true}) {
            const std::vector<QColor> inks =
                isLight ? std::vector{QColor(Qt::white), QColor(200, 200, 200)}
                        : std::vector{QColor(Qt::black), QColor(90, 90, 90), QColor(0, 0, 160)};
            Row row{std::string(isLight ? "light" : "dark") + " on nothing, fringe of " +
                        text(width) + " px",
                    {}};
            for (const QColor ink : inks) {
                for (const int pixelSize : {14, 24}) {
                    const Look look{.pixelSize = pixelSize, .ink = ink, .ground = Qt::transparent};
                    row.pictures.push_back(withFringe(look,
                                                      width == 0 ? ink
                                                      : isLight  ? Qt::black
                                                                 : Qt::white,
                                                      width));
                }
            }
            rows.push_back(std::move(row));
        }
    }
}

void addNoisy(std::vector<Row>& rows)
{
    for (const int deviation : {10, 25, 50}) {
        Row row{"noise of " + text(deviation), {}};
        for (const double ratio : {2.0, 4.5, 21.0}) {
            for (const int pixelSize : {14, 24}) {
                row.pictures.push_back(
                    drawn({.pixelSize = pixelSize, .ink = inkOn(Qt::white, ratio)}));
                addNoise(row.pictures.back(), deviation);
            }
        }
        rows.push_back(std::move(row));
    }
}

void addTilted(std::vector<Row>& rows)
{
    for (const double tilt : {-3, -1, 1, 2, 5}) {
        Row row{"tilt of " + text(tilt) + " degrees", {}};
        for (const double ratio : {1.5, 3.0, 21.0}) {
            for (const int pixelSize : {14, 24})
                row.pictures.push_back(drawn({.family = fonts[1],
                                              .pixelSize = pixelSize,
                                              .ink = inkOn(Qt::white, ratio),
                                              .tilt = tilt}));
        }
        rows.push_back(std::move(row));
    }
}

} // namespace

std::vector<std::string> words()
{
    std::istringstream stream(prose);
    std::vector<std::string> result;
    for (std::string word; stream >> word;)
        result.push_back(word);
    return result;
}

std::vector<Row> rows()
{
    std::vector<Row> rows;
    addContrasts(rows);
    addColours(rows);
    addTransparent(rows);
    addNoisy(rows);
    addTilted(rows);
    return rows;
}

} // namespace HardPictures

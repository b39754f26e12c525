#pragma once

#include <allheaders.h>

#include <memory>

struct PictureDeleter
{
    void operator()(Pix* picture) const { pixDestroy(&picture); }
};

/// A picture of Leptonica's and its owner; null stands for a call that has failed.
using Picture = std::unique_ptr<Pix, PictureDeleter>;

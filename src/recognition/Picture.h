#pragma once

#include <allheaders.h>

#include <memory>

struct PictureDeleter
{
    void operator()(Pix* picture) const { pixDestroy(&picture); }
};

/// Owns a picture of Leptonica's. Null if the call that should have made it has failed.
using Picture = std::unique_ptr<Pix, PictureDeleter>;

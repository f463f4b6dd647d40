// The player's pictures for a machine without a screen: each page, and the play list's menu
// open, painted into PNG files in a fixed state.
#pragma once

#include "PlayerWindow.h"

namespace player {

// Puts the window in the pictures' state (a track 1:42 in, two rows selected, the scan under
// way) and writes the four pictures into folder; 0, or 1 if one could not be written.
int WritePictures(PlayerWindow &window, PlayerModel &model, const wchar_t *folder);

} // namespace player

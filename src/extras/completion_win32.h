// The end of a game: after the completion clip, the finished picture with its title, then the
// wallpaper question, then the honour roll. Also the music's pause and resume around clips.
#pragma once

// Fills the video window's hooks that lead from the completion clip to the reward.
void InstallCompletionFlow();
// The reward display of the completed puzzle's picture. When the picture cannot be shown, the
// wallpaper question comes at once, so the game's end always reaches the honour roll.
void ShowCompletedPicture();

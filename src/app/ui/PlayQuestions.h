#pragma once

// The questions a play may ask before its songs reach the player, as message boxes.

class QWidget;

namespace jk {

struct PlayFront;

// The front's askRetry and askYesNo as boxes in front of `parent`.
void AskInBoxes(PlayFront& front, QWidget* parent);

}  // namespace jk

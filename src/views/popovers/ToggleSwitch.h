#pragma once

// One on/off switch serves the settings window and the fan section alike.
#include "views/settings/ToggleSwitch.h"

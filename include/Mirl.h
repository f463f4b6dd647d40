// The library's chief header: include this one.
#pragma once

#include "MirlExport.h"
#include "MirlException.h"
#include "MirlSkin.h"
#include "MirlEntry.h"
#include "MirlStyles.h"
#include "MirlWindow.h"
#include "MirlText.h"
#include "MirlImage.h"
#include "MirlButton.h"
#include "MirlCaptionLayout.h"
#include "MirlStatic.h"
#include "MirlContainer.h"
#include "MirlGroupBox.h"

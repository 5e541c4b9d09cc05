// SPDX-License-Identifier: MIT
#include "platform/messageport.h"

// SPDX-License-Identifier: MIT
#include "platform/distributednotificationcenter.h"

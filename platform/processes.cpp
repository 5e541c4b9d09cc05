// SPDX-License-Identifier: MIT
#include "platform/processes.h"

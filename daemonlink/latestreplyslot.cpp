// SPDX-License-Identifier: MIT
#include "daemonlink/latestreplyslot.h"

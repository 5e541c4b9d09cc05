// SPDX-License-Identifier: MIT
#include "daemonlink/daemontransport.h"

// SPDX-License-Identifier: MIT
#include "daemonlink/replyport.h"

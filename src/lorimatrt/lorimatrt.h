/* The name by which code in this tree knows the exports: the one declaration of them is the
 * installed one. */
#ifndef LORIMATRT_SRC_LORIMATRT_H
#define LORIMATRT_SRC_LORIMATRT_H

#include "../../include/lorimatrt/lorimatrt.h"

#endif

// SPDX-License-Identifier: MIT
#include "resources/resources.h"

#include <QtGlobal>

void initStalloResources()
{
    Q_INIT_RESOURCE(stallo);
}

// SPDX-License-Identifier: MIT
#pragma once

// Makes the compiled-in files known to the toolkit (":/icon1.ico"). They lie in a static library,
// where nothing else would link them; main calls this once, before the first use.
void initStalloResources();

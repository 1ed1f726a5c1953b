// SPDX-License-Identifier: MIT
#pragma once

// Makes the compiled-in files known to the toolkit (":/icon1.ico",
// ":/pictures/resources/apply.png"). They lie in a static library, where nothing else would link
// them, so it is called before the first use; again is harmless.
void initStalloResources();

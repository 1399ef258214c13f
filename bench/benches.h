// SPDX-License-Identifier: MIT
// Who adds what to the table of ratios.
#pragma once

#include "ratio.h"

namespace quillmere::bench {

void AddXmlBenches(RatioTable& table);
void AddCatalogueBenches(RatioTable& table);
void AddCatalogueReadBenches(RatioTable& table);
void AddEngineBenches(RatioTable& table);
void AddMemoryBenches(RatioTable& table);
void AddRegistryBenches(RatioTable& table);
void AddWindowBenches(RatioTable& table);

}  // namespace quillmere::bench

// The version of the host that these headers stand for.
#pragma once

#define MAX_PRODUCT_YEAR_NUMBER 2019

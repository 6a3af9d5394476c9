#include "standin/maxscript/value.h"

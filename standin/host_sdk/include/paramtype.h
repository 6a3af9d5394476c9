// Type tags of values that scripts and published functions pass.
#pragma once

enum ParamType2 {
    TYPE_INT,
    TYPE_FLOAT,
    TYPE_BOOL,
    TYPE_STRING,
    TYPE_FILENAME,
    TYPE_TSTR,
    TYPE_VALUE,
    TYPE_VOID
};

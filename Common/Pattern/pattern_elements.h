// Every class of element, for whoever visits them all.

#pragma once

#include "pattern_bitfield_element.h"
#include "pattern_byteset_element.h"
#include "pattern_eol_element.h"
#include "pattern_number_element.h"
#include "pattern_string_element.h"
#include "pattern_whitespace_element.h"

#include "lumo/values/AttributeTypes.h"

#include "lumo/platform/core/Early.h"

LUMO_EARLY std::string const AttributeTypes::POINT_TYPE_STRING = "POIN";
LUMO_EARLY std::string const AttributeTypes::RANGE_TYPE_STRING = "RNGE";
LUMO_EARLY std::string const AttributeTypes::FLOAT_FUNCTIONAL_TYPE_STRING = "FUNC";
LUMO_EARLY std::string const AttributeTypes::INTEGER_TYPE_STRING = "INPT";
LUMO_EARLY std::string const AttributeTypes::LOGICAL_TYPE_STRING = "LOGI";
LUMO_EARLY std::string const AttributeTypes::DISCRETE_TYPE_STRING = "DISC";
LUMO_EARLY std::string const AttributeTypes::SHORT_TEXT_TYPE_STRING = "STXT";
LUMO_EARLY std::string const AttributeTypes::LONG_TEXT_TYPE_STRING = "LTXT";
LUMO_EARLY std::string const AttributeTypes::DATE_TIME_TYPE_STRING = "DTTM";
LUMO_EARLY std::string const AttributeTypes::HYPERLINK_TYPE_STRING = "HLNK";
LUMO_EARLY std::string const AttributeTypes::PICTURE_TYPE_STRING = "PICT";
LUMO_EARLY std::string const AttributeTypes::FILE_TYPE_STRING = "FILE";
LUMO_EARLY std::string const AttributeTypes::DISCRETE_FUNCTIONAL_TYPE_STRING = "DSFN";
LUMO_EARLY std::string const AttributeTypes::MATHS_FUNCTIONAL_TYPE_STRING = "MAFN";
LUMO_EARLY std::string const AttributeTypes::TABULAR_TYPE_STRING = "TABL";
LUMO_EARLY std::string const AttributeTypes::LIST_TYPE_STRING = "LIST";
LUMO_EARLY std::string const AttributeTypes::EMPTY_TYPE_STRING = "EMPT";
LUMO_EARLY std::string const AttributeTypes::LINK_TYPE_STRING = "LINK";
LUMO_EARLY std::string const AttributeTypes::FLOAT_FUNCTIONAL_SERIES_TYPE_STRING =
    "FLOAT_FUNCTIONAL_SERIES";
LUMO_EARLY std::string const AttributeTypes::FLOAT_FUNCTIONAL_GRIDDED_TYPE_STRING =
    "FLOAT_FUNCTIONAL_GRIDDED";

#pragma once

#include <rapidxml/rapidxml.hpp>

// They shape the document, which the library and its callers share.
static_assert(RAPIDXML_STATIC_POOL_SIZE == 65536 && RAPIDXML_DYNAMIC_POOL_SIZE == 65536 &&
                  RAPIDXML_ALIGNMENT == 8,
              "RapidXML must be compiled with its default pool sizes");

/// RapidXML's document tree under this library's names. Names and values are pointer plus length
/// into memory that the document owns. A document is large (64 KiB inside the object): keep it on
/// the heap.
template <class Ch>
using XmlDocument = rapidxml::xml_document<Ch>;
template <class Ch>
using XmlNode = rapidxml::xml_node<Ch>;
template <class Ch>
using XmlBase = rapidxml::xml_base<Ch>;
template <class Ch>
using XmlAttribute = rapidxml::xml_attribute<Ch>;

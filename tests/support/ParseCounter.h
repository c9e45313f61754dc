#pragma once

/// How often this process has parsed an XML text so far. Linking this in puts a counting parser
/// before the shared library's own.
int ParsedTexts();

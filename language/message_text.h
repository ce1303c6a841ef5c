// Marks a text that is shown in the user's language and reaches its translation by way of a
// variable or a table. script/messages collects what stands in it for the catalogs of po/.
#pragma once

#define TR_TEXT(text) text

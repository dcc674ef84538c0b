"""Which character follows which when the fingering of a diagram is changed, and the groups of
characters ("slots") that belong to one chord because of it.

The program changes a diagram by this table alone: it finds the character in the table, read row by
row, and takes the entry below it; "§" or the end of the table leads back to the top. Fonts with an
even number first try SUBSTITUTIONS. So the table decides how many diagrams a chord can have.
"""

ABSENT = "§"
EMPTY_NECK = "J"

COLUMNS = 94
FILL = " "  # stands for entries of two characters, which equal no diagram

ROWS = [
    row.replace("|", "")
    for row in (
        " anüdóºéágvxzúm¼â/,.ê;ôkiyûöãùòñìèàäqýerï'13580æ¹oð"
        "|anüdóºéágvxzmâ/,.ê;ôkiyûãùòñèäqer'13580æoð ",
        " ANÜDÓªÉÁGVXZÚM¾ÂÿåþÊ:ÔKIYÛÖÃÙÒÑÌÈÀÄQÝERÏƒŠØçš…Æ‚Oœ"
        "|ANÜDÓªÉÁGVXZMÂÿåþÊ:ÔKIYÛÃÙÒÑÈÄQERƒŠØçš…ÆOœ ",
        "§s§§f§§í§hbc§§§§§§§§î§§l§Å§§õ§§§§§§§w§ët§§2469§‡§pŒ"
        "|s§§f§§§§hbc§§§§§§§§§l§u§õ§§§§§wët§2469§‡pŒ ",
        "§S§§F§§Í§HBC§§§§§§§§Î§§L§u§§Õ§§§§§§§W§ËT§§ÐŸ7„§†§Pß"
        "|S§§F§§§§HBC§§§§§§§§§L§U§Õ§§§§§WËT§ÐŸ7„§†Pß ",
        "§²§§³§§§§j§§§§§§§§§§§§§§§U§§§§§§§§§§§§§§§§§½Ç§§Þ§§§"
        "|²§§³§§§§j§§§§§§§§§§§§§§§§§§§§§§§§§½Ç§§Þ§§§§",
        "§§§§§§§§§J§§§§§§§§§§§§§§§§§§§§§§§§§§§§§§§§§§§§§§§§§"
        "|§§§§§§§§J§§§§§§§§§§§§§§§§§§§§§§§§§§§§§§§§§§",
    )
]
TABLE = "".join(ROWS)
assert all(len(row) == COLUMNS for row in ROWS)

SUBSTITUTIONS = {"É": "é", "Ê": "ê", "Y": "u", "í": "Í", "Í": "ì", "ì": "Ì", "Ì": "í"}
UNCHANGED = "îÎ"

# What belongs to one chord, in the order in which the program walks, by the family of the font.
ODD_SLOTS = [
    "".join(row[k] for row in ROWS if row[k] != ABSENT).removesuffix(EMPTY_NECK)
    for k in range(1, 51)
]
EVEN_SLOTS = (
    "aAsS² nN üÜ dDfF³ óÓ ºª éÉ áÁ gGhHj vVbB xXcC zZ mM âÂ /ÿ ,å .þ êÊ ;: ôÔ kKlL iI yYuU ûÛ "
    "ãÃõÕ ùÙ òÒ ñÑ íÍìÌ èÈ äÄ qQwW eEëË rRtT 'ƒ 1Š2Ð 3Ø4Ÿ½ 5ç67Ç 8š9„ 0… æÆ‡†Þ oOpP ðœŒß"
).split()


class FingeringChange:
    """The command as the program carries it out, with the one thing that it remembers."""

    def __init__(self):
        self.position = 0

    def next(self, character, even):
        """The character that replaces the selected one; None where the table does not know it."""
        if even and character in UNCHANGED:
            return character
        if even and character in SUBSTITUTIONS:
            return SUBSTITUTIONS[character]
        last_row = 5 * COLUMNS
        if self.position > last_row:
            self.position -= last_row
            return TABLE[self.position]
        position = TABLE.find(character)
        if position < 0:
            return None
        if position + COLUMNS < len(TABLE):
            position += COLUMNS
        if TABLE[position] == ABSENT:
            position -= COLUMNS
            while position > COLUMNS:
                position -= COLUMNS
        self.position = position
        return TABLE[position]

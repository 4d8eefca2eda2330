/// Tells where it was built, but not against what.
__asm__(".pushsection .note.zelm,\"a\",%note\n"
        ".balign 4\n.long 5,2f-1f,2\n.asciz \"ZELM\"\n.balign 4\n"
        "1:.ascii \"some/where\"\n"
        "2:.balign 4\n.popsection");

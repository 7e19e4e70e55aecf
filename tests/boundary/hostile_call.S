// void hostile_call(call_record *), for 32-bit Linux and Windows.
#include "tests/boundary/call_record.h"

#define PASTE(prefix, name) prefix##name
#define SYMBOL_WITH(prefix, name) PASTE(prefix, name)
#define SYMBOL(name) SYMBOL_WITH(__USER_LABEL_PREFIX__, name)

.text
.globl SYMBOL(hostile_call)
SYMBOL(hostile_call):
    pushl %ebp
    pushl %ebx
    pushl %esi
    pushl %edi
    movl 20(%esp), %eax
    movl %esp, OWN_STACK(%eax)
    fnstcw OWN_CONTROL_WORD(%eax)

    // Above the arguments the record's address, many times: it is found again even if the function
    // has taken its arguments off the stack.
    andl $-16, %esp
    subl $16, %esp
    addl STACK_OFFSET(%eax), %esp
    movl $ARGUMENT_WORDS, %ecx
0:  pushl %eax
    decl %ecx
    jnz 0b
    movl $ARGUMENT_WORDS, %ecx
0:  pushl ARGUMENTS - 4(%eax, %ecx, 4)
    decl %ecx
    jnz 0b

    pcmpeqb %mm0, %mm0
    pcmpeqb %mm1, %mm1
    pcmpeqb %mm2, %mm2
    pcmpeqb %mm3, %mm3
    pcmpeqb %mm4, %mm4
    pcmpeqb %mm5, %mm5
    pcmpeqb %mm6, %mm6
    pcmpeqb %mm7, %mm7

    movl BEFORE + EBX(%eax), %ebx
    movl BEFORE + ESI(%eax), %esi
    movl BEFORE + EDI(%eax), %edi
    movl BEFORE + EBP(%eax), %ebp
    movl %esp, BEFORE + ESP(%eax)
    cld
    call *FUNCTION(%eax)

    movl 4 * ARGUMENT_WORDS(%esp), %eax
    movl %ebx, AFTER + EBX(%eax)
    movl %esi, AFTER + ESI(%eax)
    movl %edi, AFTER + EDI(%eax)
    movl %ebp, AFTER + EBP(%eax)
    movl %esp, AFTER + ESP(%eax)
    pushfl
    popl FLAGS(%eax)
    fnstenv ENVIRONMENT(%eax)

    cld
    fninit
    fldcw OWN_CONTROL_WORD(%eax)
    movl OWN_STACK(%eax), %esp
    popl %edi
    popl %esi
    popl %ebx
    popl %ebp
    ret

#ifdef __ELF__
.section .note.GNU-stack, "", @progbits
#endif

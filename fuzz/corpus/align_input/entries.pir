ENTRY           CCHU       #type complete
TITLE           cytochrome c - human
DATE            01-Jan-1990
SEQUENCE
                5        10        15        20        25        30
      1 G D V E K G K K I F I M K C S Q C H T V E K G G K H K T G P
     31 N L H G L F G R K T
///
ENTRY           CCHO       #type complete
TITLE           cytochrome c - horse
SEQUENCE
      1 G D V E K G K K I F V Q K C A Q C H T V E K G G K H K T G P
///

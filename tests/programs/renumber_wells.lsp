;; RENUM: numbers the blocks of one kind again, from west to east (rows: from north to south)
;; The number goes into the attribute whose tag is asked for.

(defun get-attribute (e tag / r)
  (while (and (setq e (entnext e))
              (= (cdr (assoc 0 (entget e))) "ATTRIB")
              (not r))
    (if (= (strcase (cdr (assoc 2 (entget e)))) (strcase tag))
      (setq r e)))
  r)

(defun set-attribute (e tag value / a d)
  (if (setq a (get-attribute e tag))
    (progn
      (setq d (entget a))
      (entmod (subst (cons 1 value) (assoc 1 d) d))
      (entupd e)
      T)))

(defun ss->list (ss / i r)
  (if ss
    (repeat (setq i (sslength ss))
      (setq r (cons (ssname ss (setq i (1- i))) r)))))

(defun c:renum (/ name tag prefix start order wells done missed place)
  (setq name   (getstring "\nBlock name: ")
        tag    (strcase (getstring "\nAttribute tag <NO>: "))
        prefix (getstring T "\nPrefix: "))
  (if (= tag "") (setq tag "NO"))
  (initget 4)
  (setq start (getint "\nFirst number <1>: "))
  (if (not start) (setq start 1))
  (initget "Columns Rows")
  (setq order (cond ((getkword "\nOrder [Columns/Rows] <Columns>: ")) ("Columns"))
        place (if (= order "Rows")
                (function (lambda (e / p) (setq p (cdr (assoc 10 (entget e))))
                                          (list (- (cadr p)) (car p))))
                (function (lambda (e / p) (setq p (cdr (assoc 10 (entget e))))
                                          (list (car p) (cadr p)))))
        wells (ss->list (ssget "_X" (list '(0 . "INSERT") (cons 2 name) '(66 . 1))))
        wells (mapcar (function (lambda (e) (cons (place e) e))) wells)
        wells (vl-sort wells
                (function (lambda (a b)
                  (if (equal (caar a) (caar b) 1e-6)
                    (< (cadar a) (cadar b))
                    (< (caar a) (caar b))))))
        done 0
        missed 0)
  (foreach well wells
    (if (set-attribute (cdr well) tag (strcat prefix (itoa (+ start done))))
      (setq done (1+ done))
      (setq missed (1+ missed))))
  (princ (strcat "\n" (itoa done) " numbered"
                 (if (> missed 0) (strcat ", " (itoa missed) " without " tag) "") "."))
  (princ))
